#include "indications/InteropRules.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "indications/Destination.h"
#include "query/Condition.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr std::uint64_t kCimXml = 2;
constexpr std::uint64_t kDisabled = 4;
constexpr std::size_t kLongestText = 1U << 16;
constexpr CMPICount kMostElements = 256;

[[noreturn]] void refuse(const std::string& why) {
  throw Refusal(CMPI_RC_ERR_INVALID_PARAMETER, why);
}

/// What the classes ask for beyond the schema's own defaults.
struct DefaultRow {
  const char* className;
  const char* property;
  const char* value;
};

constexpr std::array kDefaults = {
    DefaultRow{kDestinationClass, "PersistenceType", "2"},
    DefaultRow{kSubscriptionClass, "SubscriptionState", "2"},
    DefaultRow{kSubscriptionClass, "OnFatalErrorPolicy", "2"},
    DefaultRow{kSubscriptionClass, "RepeatNotificationPolicy", "2"},
};

CMPIData now(Arena& arena) {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count();
  return dataOf(makeDateTime(arena, {static_cast<std::uint64_t>(microseconds), false}));
}

void setDefault(StoredInstance& stored, const std::string& property, std::string_view text) {
  const PropertyDef* const def = stored.classDef().property(property);
  if (!def || stored.value(property) || isArray(def->type) || def->type == CMPI_ref) return;
  stored.set(property, parseScalar(stored.arena, def->type, text, property));
}

void checkSize(const std::string& property, const CMPIData& data) {
  if (data.type == CMPI_string && textOf(data.value.string).size() > kLongestText) {
    refuse("'" + property + "' is longer than " + std::to_string(kLongestText) + " bytes");
  }
  if (!isArray(data.type)) return;
  const ArrayBody& array = as<Array>(data.value.array)->body();
  if (array.count > kMostElements)
    refuse("'" + property + "' has more than " + std::to_string(kMostElements) + " elements");
  for (CMPICount i = 0; i < array.count; ++i) {
    if (!isNull(array.elements[i])) checkSize(property, array.elements[i]);
  }
}

}  // namespace

bool isEnabled(const StoredInstance& subscription) {
  return subscription.number("SubscriptionState") != kDisabled;
}

bool InteropRules::isOf(const StoredInstance& stored, const char* className) const {
  return _names.repository().isA(stored.classDef().name, className);
}

void InteropRules::requireCreatable(const ClassDef& classDef) const {
  const ClassRepository& repository = _names.repository();
  for (const char* className : {kFilterClass, kDestinationClass, kSubscriptionClass}) {
    if (!classDef.abstract && repository.isA(classDef.name, className)) return;
  }
  throw Refusal(CMPI_RC_ERR_NOT_SUPPORTED, "instances of " + classDef.name + " cannot be made here");
}

void InteropRules::complete(StoredInstance& stored) const {
  for (const PropertyDef* key : stored.classDef().keys()) {
    const std::string value = _names.defaultOf(key->name, stored.classDef());
    if (!value.empty()) setDefault(stored, key->name, value);
  }
  for (const PropertyDef& property : stored.classDef().properties) {
    if (property.defaultValues && !isArray(property.type))
      setDefault(stored, property.name, property.defaultValues->front());
  }
  for (const DefaultRow& row : kDefaults) {
    if (isOf(stored, row.className)) setDefault(stored, row.property, row.value);
  }
  if (isOf(stored, kSubscriptionClass) && !stored.value("SubscriptionStartTime")) {
    stored.set("SubscriptionStartTime", now(stored.arena));
  }
}

void InteropRules::noteState(StoredInstance& stored) const {
  if (isOf(stored, kSubscriptionClass)) stored.set("TimeOfLastStateChange", now(stored.arena));
}

void InteropRules::check(const StoredInstance& stored) const {
  checkProperties(stored);
  if (isOf(stored, kFilterClass)) checkFilter(stored);
  if (isOf(stored, kDestinationClass)) checkDestination(stored);
}

void InteropRules::checkProperties(const StoredInstance& stored) const {
  for (const PropertyDef& property : stored.classDef().properties) {
    const CMPIData* const data = stored.value(property.name);
    if (!data && (property.required || property.key)) refuse("'" + property.name + "' has to be given");
    if (!data) continue;
    checkSize(property.name, *data);
    const bool mapped = integerRange(property.type) && !property.values.empty();
    if (mapped && !property.valueText(signedOf(*data))) {
      refuse("'" + property.name + "' cannot be " + formatKeyValue(*data));
    }
  }
  if (stored.value("CreationClassName") &&
      !sameName(stored.text("CreationClassName"), stored.classDef().name)) {
    refuse("'CreationClassName' has to be " + stored.classDef().name);
  }
}

bool InteropRules::isFromSources(const StoredInstance& filter) const {
  const std::string one = filter.text("SourceNamespace");
  const CMPIData* const several = filter.value("SourceNamespaces");
  if (one.empty() && !several) return true;
  if (!one.empty() && sameNameSpace(one, _sourceNameSpace)) return true;
  if (!several) return false;
  const ArrayBody& array = as<Array>(several->value.array)->body();
  return std::any_of(array.elements, array.elements + array.count, [this](const CMPIData& element) {
    return !isNull(element) && sameNameSpace(textOf(element.value.string), _sourceNameSpace);
  });
}

void InteropRules::checkFilter(const StoredInstance& filter) const {
  const std::string language = filter.text("QueryLanguage");
  if (!isQueryLanguage(language)) {
    throw Refusal(CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED,
                  "query language '" + language + "' is not known: expected WQL or DMTF:CQL");
  }
  if (!isFromSources(filter)) refuse("indications come from " + _sourceNameSpace + " only");
  try {
    checkQuery(OwnedQuery(filter.text("Query")).query(), _sources);
  } catch (const QueryError& error) {
    throw Refusal(CMPI_RC_ERR_INVALID_QUERY, error.what());
  }
}

void InteropRules::checkDestination(const StoredInstance& destination) const {
  if (!isUsableDestination(destination.text("Destination"))) {
    refuse("'Destination' has to be a URL of http or https with a host, and without user and password");
  }
  if (destination.number("Protocol") != kCimXml) refuse("'Protocol' has to be 2, which is CIM-XML");
}

void InteropRules::resolve(StoredInstance& stored, const Find& find) const {
  if (!isOf(stored, kSubscriptionClass)) return;
  for (const auto& [role, className] : {std::pair{"Filter", kFilterClass}, {"Handler", kDestinationClass}}) {
    const CMPIData* const reference = stored.value(role);
    if (!reference) refuse("'" + std::string(role) + "' has to be given");
    const StoredInstance* const target = find(_names.nameOf(*reference));
    if (!target || !isOf(*target, className)) {
      refuse("'" + std::string(role) + "' refers to no " + className + " that is there");
    }
    PathBody* const path = copyPath(stored.arena, *target->instance->body().path);
    stored.set(role, dataOf(makeHandle<ObjectPath>(stored.arena, path)));
  }
}

}  // namespace ZebManager
