#pragma once

#include <any>
#include <atomic>
#include <string>
#include <utility>

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiResult.h"

namespace ZEB {

class CmpiManagedInstanceAssociation;

/// One CIM instance that a provider serves. Owned by a `CmpiManagedInstanceCollection` from `createInstance`
/// on. The slots are called under the lock that guards the collection; visibility may be asked and set by any
/// thread.
class CmpiManagedInstance {
 public:
  CmpiManagedInstance() = default;
  virtual ~CmpiManagedInstance() = default;
  CmpiManagedInstance(const CmpiManagedInstance&) = delete;
  CmpiManagedInstance& operator=(const CmpiManagedInstance&) = delete;

  /// The same path for as long as the instance lives.
  virtual CmpiCpp::CmpiObjectPath makeObjectPath() = 0;
  /// That path's hash, for which a class may not need the path.
  virtual std::size_t pathHash() { return makeObjectPath().hash(); }
  virtual CmpiCpp::CmpiInstance makeInstance() = 0;
  /// With no properties but those that a client wants. A class may not have to make the others.
  virtual CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted);
  /// Throws `CmpiStatus` with `CMPI_RC_ERR_METHOD_NOT_FOUND` unless overridden.
  virtual void invokeMethod(const CmpiCpp::CmpiName& method, const CmpiCpp::CmpiArgs& in,
                            CmpiCpp::CmpiMethodResult& result);
  virtual CmpiCpp::CmpiName className() const = 0;
  /// This instance if it is an association, else null.
  virtual const CmpiManagedInstanceAssociation* association() const { return nullptr; }

  /// Names what the instance stands for, whatever its path, so that an instance that takes its place can be
  /// told what it remembers. Empty where nothing is remembered. Settled when the instance is constructed.
  const std::string& subject() const { return _subject; }
  virtual std::any memory() const { return {}; }
  /// Takes over what an instance of the same subject had as its `memory`.
  virtual void remember(const std::any& /*memory*/) {}

  /// An invisible instance is there for its owner and for no client. Visible when constructed.
  bool visible() const { return _visible; }
  void setVisible(bool visible) { _visible = visible; }

  /// Whether the instance watches its status and reports changes of it. Settled when it is constructed.
  bool watchesStatus() const { return _watchesStatus; }

 protected:
  void setSubject(std::string subject) { _subject = std::move(subject); }
  void setWatchesStatus(bool watches) { _watchesStatus = watches; }

 private:
  std::string _subject;
  std::atomic<bool> _visible{true};
  bool _watchesStatus = false;
};

}  // namespace ZEB
