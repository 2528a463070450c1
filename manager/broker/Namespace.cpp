#include "broker/Namespace.h"

namespace ZebManager {

Reply Namespace::forEachInstance(std::string_view className, PropertyList properties,
                                 const TakeInstance& take) {
  const Reply all = enumerateInstances(className, properties);
  for (const CMPIData& item : all.items()) {
    if (const Instance* const instance = as<Instance>(item.value.inst)) take(instance->body());
  }
  Reply reply;
  reply.code = all.code;
  reply.message = all.message;
  return reply;
}

}  // namespace ZebManager
