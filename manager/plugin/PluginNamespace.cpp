#include "plugin/PluginNamespace.h"

#include "broker/HostName.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr char kSystemClass[] = "ZEB_ComputerSystem";

bool isSystemPath(const PathBody& path) {
  return sameName(path.className, kSystemClass);
}

bool isThisSystem(const PathBody& path) {
  const NamedValue* const name = path.keys.find("Name");
  const NamedValue* const className = path.keys.find("CreationClassName");
  return isSystemPath(path) && path.keys.count == 2 && name && className && name->data.type == CMPI_string &&
         sameName(textOf(name->data.value.string), hostName()) &&
         sameName(textOf(className->data.value.string), kSystemClass);
}

Reply refused(CMPIrc code, std::string why) {
  Reply reply;
  reply.code = code;
  reply.message = std::move(why);
  return reply;
}

ObjectPath& systemPath(Arena& arena, const std::string& nameSpace) {
  ObjectPath& path = *makePath(arena, nameSpace, kSystemClass);
  path.body().host = arena.copy(hostName());
  path.body().keys.append(arena, "CreationClassName").data = dataOf(makeString(arena, kSystemClass));
  path.body().keys.append(arena, "Name").data = dataOf(makeString(arena, hostName()));
  return path;
}

void setText(const Instance& instance, const char* name, std::string_view text) {
  const CMPIData data = dataOf(makeString(*instance.arena, text));
  instance.ft->setProperty(&instance, name, &data.value, CMPI_string);
}

Arena& keptBy(Reply& reply) {
  return *reply.result()->body().keep;
}

void addSystem(Reply& reply, const ProviderCalls& provider) {
  const ClassDef* const classDef = provider.repository().find(kSystemClass);
  if (!classDef) return;
  Arena& kept = keptBy(reply);
  const Instance& system = *makeInstance(kept, systemPath(kept, provider.nameSpace()), *classDef);
  setText(system, "CreationClassName", kSystemClass);
  setText(system, "Name", hostName());
  setText(system, "ElementName", hostName());
  reply.result()->body().append(dataOf(const_cast<Instance*>(&system)));
}

bool includesSystem(const ClassRepository& repository, std::string_view className) {
  return repository.isA(kSystemClass, className);
}

bool leadsToSystem(const Reply& names) {
  for (const CMPIData& item : names.items()) {
    const ObjectPath* const path = item.type == CMPI_ref ? as<ObjectPath>(item.value.ref) : nullptr;
    if (path && isThisSystem(path->body())) return true;
  }
  return false;
}

Reply noSuchSystem() {
  return refused(CMPI_RC_ERR_NOT_FOUND, "there is no such system");
}

Reply fixedSystem() {
  return refused(CMPI_RC_ERR_NOT_SUPPORTED, "the system is as it is");
}

bool namesSystem(const CMPIObjectPath& path) {
  const ObjectPath* const own = as<ObjectPath>(&path);
  return own && isSystemPath(own->body());
}

}  // namespace

PluginNamespace::PluginNamespace(const ProviderCalls& provider) : _provider(provider) {}

Reply PluginNamespace::enumerateInstances(std::string_view className, PropertyList properties) {
  Reply reply =
      sameName(className, kSystemClass) ? Reply() : _provider.enumerateInstances(className, properties);
  if (reply.code == CMPI_RC_OK && includesSystem(repository(), className)) addSystem(reply, _provider);
  return reply;
}

Reply PluginNamespace::forEachInstance(std::string_view className, PropertyList properties,
                                       const TakeInstance& take) {
  Reply reply =
      sameName(className, kSystemClass) ? Reply() : _provider.forEachInstance(className, properties, take);
  if (reply.code == CMPI_RC_OK && includesSystem(repository(), className)) {
    Reply system;
    addSystem(system, _provider);
    for (const CMPIData& item : system.items()) take(as<Instance>(item.value.inst)->body());
  }
  return reply;
}

Reply PluginNamespace::enumerateInstanceNames(std::string_view className) {
  Reply reply = sameName(className, kSystemClass) ? Reply() : _provider.enumerateInstanceNames(className);
  if (reply.code == CMPI_RC_OK && includesSystem(repository(), className)) {
    reply.result()->body().append(dataOf(&systemPath(keptBy(reply), _provider.nameSpace())));
  }
  return reply;
}

Reply PluginNamespace::getInstance(const CMPIObjectPath& path, PropertyList properties) {
  if (!namesSystem(path)) return _provider.getInstance(path, properties);
  if (!isThisSystem(as<ObjectPath>(&path)->body())) return noSuchSystem();
  Reply reply;
  addSystem(reply, _provider);
  return reply;
}

Reply PluginNamespace::createInstance(const CMPIObjectPath& path, const CMPIInstance& instance) {
  return namesSystem(path) ? fixedSystem() : _provider.createInstance(path, instance);
}

Reply PluginNamespace::modifyInstance(const CMPIObjectPath& path, const CMPIInstance& instance,
                                      PropertyList properties) {
  return namesSystem(path) ? fixedSystem() : _provider.modifyInstance(path, instance, properties);
}

Reply PluginNamespace::deleteInstance(const CMPIObjectPath& path) {
  return namesSystem(path) ? fixedSystem() : _provider.deleteInstance(path);
}

/// The provider knows where associations lead, but has no instance for the system.
Reply PluginNamespace::associators(const CMPIObjectPath& path, const AssociationFilter& filter,
                                   PropertyList properties) {
  Reply reply = _provider.associators(path, filter, properties);
  if (reply.code != CMPI_RC_OK) return reply;
  if (leadsToSystem(_provider.associatorNames(path, filter))) addSystem(reply, _provider);
  return reply;
}

Reply PluginNamespace::associatorNames(const CMPIObjectPath& path, const AssociationFilter& filter) {
  return _provider.associatorNames(path, filter);
}

Reply PluginNamespace::references(const CMPIObjectPath& path, const AssociationFilter& filter,
                                  PropertyList properties) {
  return _provider.references(path, filter, properties);
}

Reply PluginNamespace::referenceNames(const CMPIObjectPath& path, const AssociationFilter& filter) {
  return _provider.referenceNames(path, filter);
}

Reply PluginNamespace::invokeMethod(const CMPIObjectPath& path, const char* method, const CMPIArgs& in,
                                    CMPIArgs& out) {
  return _provider.invokeMethod(path, method, in, out);
}

}  // namespace ZebManager
