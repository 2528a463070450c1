#pragma once

#include <functional>
#include <memory>

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "common/Logger.h"

namespace ZEB {

/// Makes a provider. The caller owns it.
using ProviderCreator = std::function<std::unique_ptr<CmpiCpp::CmpiProvider>(
    const CmpiCpp::CmpiBroker& broker, const Logger& logger)>;

/// A provider around another one, which it makes at once and owns: every operation goes on to the inner
/// provider, through `around`. The inner provider offers all four interfaces.
class ProviderDecorator : public CmpiCpp::CmpiInstanceProvider,
                          public CmpiCpp::CmpiAssociationProvider,
                          public CmpiCpp::CmpiMethodProvider,
                          public CmpiCpp::CmpiIndicationProvider {
 public:
  ProviderDecorator(const CmpiCpp::CmpiBroker& broker, const Logger& logger, const ProviderCreator& creator);

  CmpiCpp::CmpiProvider& inner() const { return *_inner; }

  CmpiCpp::CmpiBroker getBroker() const override { return _inner->getBroker(); }
  void cleanup(const CmpiCpp::CmpiContext& context, bool terminating) override;
  void goOn() override;
  void setInterfaces(CmpiCpp::ManagementInterfaces* interfaces) override;

  void enumInstanceNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                         const CmpiCpp::CmpiObjectPath& classPath) override;
  void enumInstances(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                     const CmpiCpp::CmpiObjectPath& classPath, CmpiCpp::CmpiPropertyList properties) override;
  void getInstance(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                   const CmpiCpp::CmpiObjectPath& path, CmpiCpp::CmpiPropertyList properties) override;
  void createInstance(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                      const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiInstance& instance) override;
  void modifyInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                      const CmpiCpp::CmpiInstance& instance, CmpiCpp::CmpiPropertyList properties) override;
  void deleteInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path) override;
  void execQuery(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                 const CmpiCpp::CmpiObjectPath& path, const char* query, const char* language) override;

  void associators(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                   const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& associationClass,
                   const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                   const CmpiCpp::CmpiName& resultRole, CmpiCpp::CmpiPropertyList properties) override;
  void associatorNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                       const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& associationClass,
                       const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                       const CmpiCpp::CmpiName& resultRole) override;
  void references(CmpiCpp::CmpiInstanceResult& result, const CmpiCpp::CmpiContext& context,
                  const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& resultClass,
                  const CmpiCpp::CmpiName& role, CmpiCpp::CmpiPropertyList properties) override;
  void referenceNames(CmpiCpp::CmpiObjectPathResult& result, const CmpiCpp::CmpiContext& context,
                      const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& resultClass,
                      const CmpiCpp::CmpiName& role) override;

  void invokeMethod(CmpiCpp::CmpiMethodResult& result, const CmpiCpp::CmpiContext& context,
                    const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& method,
                    const CmpiCpp::CmpiArgs& in, CmpiCpp::CmpiArgs& out) override;

  void authorizeFilter(const CmpiCpp::CmpiContext& context, const char* eventType,
                       const CmpiCpp::CmpiObjectPath& classPath, const char* owner) override;
  void mustPoll(const CmpiCpp::CmpiContext& context, const char* eventType,
                const CmpiCpp::CmpiObjectPath& classPath) override;
  bool activateFilter(const CmpiCpp::CmpiContext& context, const char* eventType,
                      const CmpiCpp::CmpiObjectPath& classPath, bool first) override;
  bool deActivateFilter(const CmpiCpp::CmpiContext& context, const char* eventType,
                        const CmpiCpp::CmpiObjectPath& classPath, bool last) override;
  void enableIndications(const CmpiCpp::CmpiContext& context) override;
  void disableIndications(const CmpiCpp::CmpiContext& context) override;

 protected:
  /// Runs `call`, which is one operation on the inner provider; `subject` is the path or class path it is
  /// about.
  virtual void around(const char* operation, const CmpiCpp::CmpiObjectPath& subject,
                      const std::function<void()>& call);

  const Logger& logger() const { return _logger; }

 private:
  Logger _logger;
  std::unique_ptr<CmpiCpp::CmpiProvider> _inner;
  CmpiCpp::CmpiInstanceProvider& _instances;
  CmpiCpp::CmpiAssociationProvider& _associations;
  CmpiCpp::CmpiMethodProvider& _methods;
  CmpiCpp::CmpiIndicationProvider& _indications;
};

}  // namespace ZEB
