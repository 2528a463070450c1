#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "cmpi/cmpi.h"
#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiStatus.h"

// Between plain values and the broker's objects, which live as long as the current call. Text goes over as
// `CMPI_string` and never as `CMPI_chars`, whose passing convention differs between object managers.

namespace CmpiCpp {

/// What the object manager made. Throws `CmpiStatus` with its code when it made nothing.
template <class Object>
Object* checked(Object* object, const CMPIStatus& status, const char* what, std::string_view className = "") {
  if (object && status.rc == CMPI_RC_OK) return object;
  throw CmpiStatus(status.rc == CMPI_RC_OK ? CMPI_RC_ERR_FAILED : status.rc,
                   std::string("the object manager cannot make ").append(what).append(className));
}

CMPIString* toBroker(const CMPIBroker* broker, const std::string& text);
/// These two throw `CmpiStatus` with the broker's code when it cannot make the object.
CMPIObjectPath* toBroker(const CMPIBroker* broker, const CmpiObjectPath& path);
CMPIInstance* toBroker(const CMPIBroker* broker, const CmpiInstance& instance);
/// The value for a call that takes one beside its type code.
CMPIValue toBroker(const CMPIBroker* broker, const CmpiData& data);

/// Makes the instances of one answer, each with what the provider says of it and nothing else: some object
/// managers begin an instance with the defaults of its class, and a client would take them for what the
/// provider said.
class InstanceMaker {
 public:
  /// With a list, the object manager is told to keep to it.
  explicit InstanceMaker(const CMPIBroker* broker, CmpiPropertyList properties = nullptr)
      : _broker(broker), _properties(properties) {}

  /// Throws like `toBroker`.
  CMPIInstance* make(const CmpiInstance& instance);

 private:
  /// A property that instances of a class begin with.
  struct Prefilled {
    CmpiName name;
    CMPIType type;
  };

  void keepToList(const CMPIInstance* made, const CmpiObjectPath& path) const;
  const std::vector<Prefilled>& prefilled(const CMPIInstance* fresh, const CmpiObjectPath& path);

  const CMPIBroker* _broker;
  CmpiPropertyList _properties;
  std::vector<std::pair<CmpiName, std::vector<Prefilled>>> _classes;  ///< looked at once in an answer
};

std::string fromBroker(const CMPIString* text);
CmpiData fromBroker(const CMPIData& data);
CmpiObjectPath fromBroker(const CMPIObjectPath* path);
CmpiInstance fromBroker(const CMPIInstance* instance);
CmpiArgs fromBroker(const CMPIArgs* args);

}  // namespace CmpiCpp
