#include "common/ProviderDecorator.h"

namespace ZEB {

using namespace CmpiCpp;

ProviderDecorator::ProviderDecorator(const CmpiBroker& broker, const Logger& logger,
                                     const ProviderCreator& creator)
    : _logger(logger),
      _inner(creator(broker, logger)),
      _instances(dynamic_cast<CmpiInstanceProvider&>(*_inner)),
      _associations(dynamic_cast<CmpiAssociationProvider&>(*_inner)),
      _methods(dynamic_cast<CmpiMethodProvider&>(*_inner)),
      _indications(dynamic_cast<CmpiIndicationProvider&>(*_inner)) {}

void ProviderDecorator::around(const char* /*operation*/, const CmpiObjectPath& /*subject*/,
                               const std::function<void()>& call) {
  call();
}

void ProviderDecorator::cleanup(const CmpiContext& context, bool terminating) {
  around("cleanup", {}, [&] { _inner->cleanup(context, terminating); });
}

void ProviderDecorator::goOn() {
  _inner->goOn();
}

// Whoever in here has work of its own has to know whether calls are let in.
void ProviderDecorator::setInterfaces(ManagementInterfaces* interfaces) {
  CmpiProvider::setInterfaces(interfaces);
  _inner->setInterfaces(interfaces);
}

void ProviderDecorator::enumInstanceNames(CmpiObjectPathResult& result, const CmpiContext& context,
                                          const CmpiObjectPath& classPath) {
  around("enumInstanceNames", classPath, [&] { _instances.enumInstanceNames(result, context, classPath); });
}

void ProviderDecorator::enumInstances(CmpiInstanceResult& result, const CmpiContext& context,
                                      const CmpiObjectPath& classPath, CmpiPropertyList properties) {
  around("enumInstances", classPath,
         [&] { _instances.enumInstances(result, context, classPath, properties); });
}

void ProviderDecorator::getInstance(CmpiInstanceResult& result, const CmpiContext& context,
                                    const CmpiObjectPath& path, CmpiPropertyList properties) {
  around("getInstance", path, [&] { _instances.getInstance(result, context, path, properties); });
}

void ProviderDecorator::createInstance(CmpiObjectPathResult& result, const CmpiContext& context,
                                       const CmpiObjectPath& path, const CmpiInstance& instance) {
  around("createInstance", path, [&] { _instances.createInstance(result, context, path, instance); });
}

void ProviderDecorator::modifyInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                       const CmpiInstance& instance, CmpiPropertyList properties) {
  around("modifyInstance", path, [&] { _instances.modifyInstance(context, path, instance, properties); });
}

void ProviderDecorator::deleteInstance(const CmpiContext& context, const CmpiObjectPath& path) {
  around("deleteInstance", path, [&] { _instances.deleteInstance(context, path); });
}

void ProviderDecorator::execQuery(CmpiInstanceResult& result, const CmpiContext& context,
                                  const CmpiObjectPath& path, const char* query, const char* language) {
  around("execQuery", path, [&] { _instances.execQuery(result, context, path, query, language); });
}

void ProviderDecorator::associators(CmpiInstanceResult& result, const CmpiContext& context,
                                    const CmpiObjectPath& path, const CmpiName& associationClass,
                                    const CmpiName& resultClass, const CmpiName& role,
                                    const CmpiName& resultRole, CmpiPropertyList properties) {
  around("associators", path, [&] {
    _associations.associators(result, context, path, associationClass, resultClass, role, resultRole,
                              properties);
  });
}

void ProviderDecorator::associatorNames(CmpiObjectPathResult& result, const CmpiContext& context,
                                        const CmpiObjectPath& path, const CmpiName& associationClass,
                                        const CmpiName& resultClass, const CmpiName& role,
                                        const CmpiName& resultRole) {
  around("associatorNames", path, [&] {
    _associations.associatorNames(result, context, path, associationClass, resultClass, role, resultRole);
  });
}

void ProviderDecorator::references(CmpiInstanceResult& result, const CmpiContext& context,
                                   const CmpiObjectPath& path, const CmpiName& resultClass,
                                   const CmpiName& role, CmpiPropertyList properties) {
  around("references", path,
         [&] { _associations.references(result, context, path, resultClass, role, properties); });
}

void ProviderDecorator::referenceNames(CmpiObjectPathResult& result, const CmpiContext& context,
                                       const CmpiObjectPath& path, const CmpiName& resultClass,
                                       const CmpiName& role) {
  around("referenceNames", path,
         [&] { _associations.referenceNames(result, context, path, resultClass, role); });
}

void ProviderDecorator::invokeMethod(CmpiMethodResult& result, const CmpiContext& context,
                                     const CmpiObjectPath& path, const CmpiName& method, const CmpiArgs& in,
                                     CmpiArgs& out) {
  around("invokeMethod", path, [&] { _methods.invokeMethod(result, context, path, method, in, out); });
}

void ProviderDecorator::authorizeFilter(const CmpiContext& context, const char* eventType,
                                        const CmpiObjectPath& classPath, const char* owner) {
  around("authorizeFilter", classPath,
         [&] { _indications.authorizeFilter(context, eventType, classPath, owner); });
}

void ProviderDecorator::mustPoll(const CmpiContext& context, const char* eventType,
                                 const CmpiObjectPath& classPath) {
  around("mustPoll", classPath, [&] { _indications.mustPoll(context, eventType, classPath); });
}

bool ProviderDecorator::activateFilter(const CmpiContext& context, const char* eventType,
                                       const CmpiObjectPath& classPath, bool first) {
  bool answer = first;
  around("activateFilter", classPath,
         [&] { answer = _indications.activateFilter(context, eventType, classPath, first); });
  return answer;
}

bool ProviderDecorator::deActivateFilter(const CmpiContext& context, const char* eventType,
                                         const CmpiObjectPath& classPath, bool last) {
  bool answer = last;
  around("deActivateFilter", classPath,
         [&] { answer = _indications.deActivateFilter(context, eventType, classPath, last); });
  return answer;
}

void ProviderDecorator::enableIndications(const CmpiContext& context) {
  around("enableIndications", {}, [&] { _indications.enableIndications(context); });
}

void ProviderDecorator::disableIndications(const CmpiContext& context) {
  around("disableIndications", {}, [&] { _indications.disableIndications(context); });
}

}  // namespace ZEB
