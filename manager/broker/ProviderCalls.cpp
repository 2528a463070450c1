#include "broker/ProviderCalls.h"

#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr CMPIStatus kOk = {CMPI_RC_OK, nullptr};
/// Nanoseconds of the monotonic clock. A plug-in that does not know the entry asks each time.
constexpr char kSharedSinceEntry[] = "ZEBSharedSince";
/// Whatever was made for an instance is of no use once it was returned.
constexpr char kTakenAtOnceEntry[] = "ZEBTakenAtOnce";
/// Becomes what the classes have no properties for. A plug-in that does not know the entry leaves it empty.
constexpr char kLinkPartnersEntry[] = "ZEBLinkPartners";
/// Left by a plug-in that knows that one.
constexpr char kStateEntry[] = "ZEBState";

/// The interface takes lists that are not const; providers do not change them.
const char** listOf(PropertyList properties) {
  return const_cast<const char**>(properties);
}

const char* orNull(const std::string& text) {
  return text.empty() ? nullptr : text.c_str();
}

void addEntry(Context& context, const char* name, const CMPIData& value) {
  context.ft->addEntry(&context, name, &value.value, value.type);
}

CMPIStatus notOffered() {
  return statusOf(CMPI_RC_ERR_NOT_SUPPORTED, "the provider does not offer this operation");
}

/// A slot that the provider leaves empty counts as an operation that it does not offer.
template <class Slot, class... Arguments>
CMPIStatus callSlot(Slot slot, Arguments... arguments) {
  return slot ? slot(arguments...) : notOffered();
}

}  // namespace

Context* makeCallContext(Arena& arena, std::string_view nameSpace) {
  Context* const context = makeContext(arena);
  addEntry(*context, CMPIInitNameSpace, dataOf(makeString(arena, nameSpace)));
  CMPIValue flags{};
  addEntry(*context, CMPIInvocationFlags, dataOf(CMPI_uint32, flags));
  return context;
}

Reply::Reply()
    : _call(std::make_unique<Arena>()), _kept(std::make_unique<Arena>()), _result(makeResult(*_kept)) {}

std::span<const CMPIData> Reply::items() const {
  return {_result->body().items, _result->body().count};
}

Reply Reply::orThrow() && {
  if (code != CMPI_RC_OK) throw CimError(code, message);
  return std::move(*this);
}

ProviderCalls::ProviderCalls(const ClassRepository& repository, std::string nameSpace)
    : _repository(repository), _nameSpace(std::move(nameSpace)) {}

ProviderCalls ProviderCalls::atOneMoment() const {
  ProviderCalls same(*this);
  same._moment = std::make_shared<Moment>(Moment{std::chrono::steady_clock::now(), std::nullopt});
  return same;
}

std::optional<std::uint64_t> ProviderCalls::state() const {
  return _moment ? _moment->state : std::nullopt;
}

void ProviderCalls::noteState(Moment& moment, const Context& context) {
  const NamedValue* const entry = context.body().values.find(kStateEntry);
  const auto state = entry ? std::optional(entry->data.value.uint64) : std::nullopt;
  moment.state = moment.answered && moment.state != state ? std::nullopt : state;
  moment.answered = true;
}

Reply ProviderCalls::perform(const void* interface, const Operation& operation) const {
  Reply reply;
  const ArenaScope scope(reply.callMemory());
  Context* const context = makeCallContext(reply.callMemory(), _nameSpace);
  if (_moment) {
    CMPIValue since{};
    since.uint64 =
        static_cast<CMPIUint64>(std::chrono::nanoseconds(_moment->begin.time_since_epoch()).count());
    addEntry(*context, kSharedSinceEntry, dataOf(CMPI_uint64, since));
  }
  const CMPIStatus status = interface ? operation(context, reply.result()) : notOffered();
  if (_moment) noteState(*_moment, *context);
  reply.code = status.rc;
  reply.message = textOf(status.msg);
  return reply;
}

Reply ProviderCalls::performForEachClass(std::string_view className, const ClassOperation& operation) const {
  return perform(_interfaces.instance, [&](const CMPIContext* context, const CMPIResult* result) {
    const ClassDef* const root = _repository.find(className);
    if (!root) return statusOf(CMPI_RC_ERR_INVALID_CLASS, "unknown class '" + std::string(className) + "'");
    for (const ClassDef* asked : _repository.instantiable(*root)) {
      const ObjectPath* const path = makePath(*currentArena(), _nameSpace, asked->name);
      if (const CMPIStatus status = operation(context, result, path); status.rc != CMPI_RC_OK) return status;
    }
    return kOk;
  });
}

Reply ProviderCalls::enumerateInstances(std::string_view className, PropertyList properties) const {
  return performForEachClass(className, [&](auto* context, auto* result, auto* path) {
    return callSlot(_interfaces.instance->ft->enumerateInstances, _interfaces.instance, context, result, path,
                    listOf(properties));
  });
}

Reply ProviderCalls::forEachInstance(std::string_view className, PropertyList properties,
                                     const TakeInstance& take) const {
  return performForEachClass(className, [&](auto* context, auto* result, auto* path) {
    CMPIValue yes{};
    yes.uint64 = 1;
    context->ft->addEntry(context, kTakenAtOnceEntry, &yes, CMPI_uint64);
    as<Result>(result)->body().take = &take;
    return callSlot(_interfaces.instance->ft->enumerateInstances, _interfaces.instance, context, result, path,
                    listOf(properties));
  });
}

Reply ProviderCalls::enumerateInstanceNames(std::string_view className) const {
  return performForEachClass(className, [&](auto* context, auto* result, auto* path) {
    return callSlot(_interfaces.instance->ft->enumerateInstanceNames, _interfaces.instance, context, result,
                    path);
  });
}

Reply ProviderCalls::getInstance(const CMPIObjectPath& path, PropertyList properties) const {
  return perform(_interfaces.instance, [&](auto* context, auto* result) {
    return callSlot(_interfaces.instance->ft->getInstance, _interfaces.instance, context, result, &path,
                    listOf(properties));
  });
}

Reply ProviderCalls::createInstance(const CMPIObjectPath& path, const CMPIInstance& instance) const {
  return perform(_interfaces.instance, [&](auto* context, auto* result) {
    return callSlot(_interfaces.instance->ft->createInstance, _interfaces.instance, context, result, &path,
                    &instance);
  });
}

Reply ProviderCalls::modifyInstance(const CMPIObjectPath& path, const CMPIInstance& instance,
                                    PropertyList properties) const {
  return perform(_interfaces.instance, [&](auto* context, auto* result) {
    return callSlot(_interfaces.instance->ft->modifyInstance, _interfaces.instance, context, result, &path,
                    &instance, listOf(properties));
  });
}

Reply ProviderCalls::deleteInstance(const CMPIObjectPath& path) const {
  return perform(_interfaces.instance, [&](auto* context, auto* result) {
    return callSlot(_interfaces.instance->ft->deleteInstance, _interfaces.instance, context, result, &path);
  });
}

Reply ProviderCalls::associators(const CMPIObjectPath& path, const AssociationFilter& filter,
                                 PropertyList properties) const {
  return perform(_interfaces.association, [&](auto* context, auto* result) {
    return callSlot(_interfaces.association->ft->associators, _interfaces.association, context, result, &path,
                    orNull(filter.associationClass), orNull(filter.resultClass), orNull(filter.role),
                    orNull(filter.resultRole), listOf(properties));
  });
}

Reply ProviderCalls::associatorNames(const CMPIObjectPath& path, const AssociationFilter& filter) const {
  return perform(_interfaces.association, [&](auto* context, auto* result) {
    return callSlot(_interfaces.association->ft->associatorNames, _interfaces.association, context, result,
                    &path, orNull(filter.associationClass), orNull(filter.resultClass), orNull(filter.role),
                    orNull(filter.resultRole));
  });
}

Reply ProviderCalls::references(const CMPIObjectPath& path, const AssociationFilter& filter,
                                PropertyList properties) const {
  return perform(_interfaces.association, [&](auto* context, auto* result) {
    return callSlot(_interfaces.association->ft->references, _interfaces.association, context, result, &path,
                    orNull(filter.resultClass), orNull(filter.role), listOf(properties));
  });
}

Reply ProviderCalls::referenceNames(const CMPIObjectPath& path, const AssociationFilter& filter) const {
  return perform(_interfaces.association, [&](auto* context, auto* result) {
    return callSlot(_interfaces.association->ft->referenceNames, _interfaces.association, context, result,
                    &path, orNull(filter.resultClass), orNull(filter.role));
  });
}

Reply ProviderCalls::invokeMethod(const CMPIObjectPath& path, const char* method, const CMPIArgs& in,
                                  CMPIArgs& out) const {
  return perform(_interfaces.method, [&](auto* context, auto* result) {
    return callSlot(_interfaces.method->ft->invokeMethod, _interfaces.method, context, result, &path, method,
                    &in, &out);
  });
}

std::string ProviderCalls::linkPartners() const {
  std::string text;
  const auto ask = [&](const CMPIContext* context, const CMPIResult* result) {
    Arena& arena = *currentArena();
    const CMPIData empty = dataOf(makeString(arena, ""));
    context->ft->addEntry(context, kLinkPartnersEntry, &empty.value, empty.type);
    const char* const none[] = {nullptr};
    const CMPIStatus status =
        callSlot(_interfaces.instance->ft->enumerateInstances, _interfaces.instance, context, result,
                 makePath(arena, _nameSpace, "ZEB_EthernetTeam"), listOf(none));
    text = textOf(context->ft->getEntry(context, kLinkPartnersEntry, nullptr).value.string);
    return status;
  };
  static_cast<void>(std::move(perform(_interfaces.instance, ask)).orThrow());
  return text;
}

Reply ProviderCalls::startIndications(const CMPISelectExp& filter, std::string_view className) const {
  return perform(_interfaces.indication, [&](const CMPIContext* context, const CMPIResult*) {
    CMPIIndicationMI* const mi = _interfaces.indication;
    const ObjectPath* const path = makePath(*currentArena(), _nameSpace, className);
    const char* const type = path->body().className.data();
    CMPIStatus status = callSlot(mi->ft->authorizeFilter, mi, context, &filter, type, path, "");
    if (status.rc != CMPI_RC_OK) return status;
    status = callSlot(mi->ft->activateFilter, mi, context, &filter, type, path, CMPIBoolean{1});
    return status.rc == CMPI_RC_OK ? callSlot(mi->ft->enableIndications, mi, context) : status;
  });
}

Reply ProviderCalls::stopIndications(const CMPISelectExp& filter, std::string_view className) const {
  return perform(_interfaces.indication, [&](const CMPIContext* context, const CMPIResult*) {
    CMPIIndicationMI* const mi = _interfaces.indication;
    const ObjectPath* const path = makePath(*currentArena(), _nameSpace, className);
    const char* const type = path->body().className.data();
    const CMPIStatus status = callSlot(mi->ft->disableIndications, mi, context);
    if (status.rc != CMPI_RC_OK) return status;
    return callSlot(mi->ft->deActivateFilter, mi, context, &filter, type, path, CMPIBoolean{1});
  });
}

Reply ProviderCalls::deactivateFilter(const CMPISelectExp& filter, std::string_view className) const {
  return perform(_interfaces.indication, [&](const CMPIContext* context, const CMPIResult*) {
    CMPIIndicationMI* const mi = _interfaces.indication;
    const ObjectPath* const path = makePath(*currentArena(), _nameSpace, className);
    const char* const type = path->body().className.data();
    return callSlot(mi->ft->deActivateFilter, mi, context, &filter, type, path, CMPIBoolean{0});
  });
}

}  // namespace ZebManager
