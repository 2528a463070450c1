#pragma once

#include <string>

#include "FakeBroker.h"
#include "FakeObjects.h"

// What the tables of the fake objects are made of.

namespace ZEB::test {

inline constexpr CMPIStatus kOk{CMPI_RC_OK, nullptr};

inline void answer(CMPIStatus* status, CMPIrc rc = CMPI_RC_OK) {
  if (status) *status = {rc, nullptr};
}

inline CMPIData missing(CMPIStatus* status, CMPIrc rc) {
  answer(status, rc);
  return {CMPI_null, CMPI_notFound, {}};
}

template <class Object, class Interface>
Object& as(const Interface* object) {
  return const_cast<Object&>(*static_cast<const Object*>(object));
}

template <class Interface>
FakeBroker& of(const Interface* object) {
  return *static_cast<FakeBroker*>(const_cast<void*>(object->hdl));
}

/// What the objects' own tables point to.
struct FakeObjectTables {
  template <class Object, class Interface>
  static Interface* clone(const Interface* object, CMPIStatus* status) {
    answer(status);
    auto* made = new Object(as<Object>(object));
    made->cloned = true;
    ++of(object)._liveClones;
    return made;
  }

  // What belongs to a call is freed with the call, whatever its owner asks.
  template <class Object, class Interface>
  static CMPIStatus release(Interface* object) {
    Object* owned = &as<Object>(object);
    if (owned->cloned) {
      --of(object)._liveClones;
      delete owned;
    }
    return kOk;
  }

  static CMPIString* text(const void* broker, CMPIStatus* status, const std::string& value) {
    answer(status);
    return static_cast<FakeBroker*>(const_cast<void*>(broker))->make<FakeString>(value);
  }
};

using Tables = FakeObjectTables;

template <class Interface>
CMPIData readAt(const Interface* object, const CmpiCpp::CmpiName& name, const CmpiCpp::CmpiData& value,
                CMPIString** nameOut, CMPIStatus* status) {
  answer(status);
  if (nameOut) *nameOut = of(object).template make<FakeString>(name.str());
  return writeValue(of(object), value);
}

}  // namespace ZEB::test
