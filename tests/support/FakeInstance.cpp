// Instances, with what an object manager makes of them by itself.
#include <algorithm>

#include "FakeTables.h"
#include "cmpicpp/CmpiData.h"

namespace ZEB::test {

using CmpiCpp::CmpiName;

namespace {

using Property = CmpiCpp::CmpiInstance::Property;

/// What is set and what is prefilled, in one row.
const Property* propertyAt(const FakeInstance& instance, std::size_t index) {
  const auto& set = instance.value.properties();
  if (index < set.size()) return &set[index];
  index -= set.size();
  return index < instance.prefilled.size() ? &instance.prefilled[index] : nullptr;
}

CMPIData instanceGetPropertyAt(const CMPIInstance* instance, CMPICount index, CMPIString** name,
                               CMPIStatus* status) {
  const Property* property = propertyAt(as<FakeInstance>(instance), index);
  if (!property) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(instance, property->name, property->value, name, status);
}

CMPIData instanceGetProperty(const CMPIInstance* instance, const char* name, CMPIStatus* status) {
  const FakeInstance& self = as<FakeInstance>(instance);
  std::size_t index = 0;
  while (const Property* property = propertyAt(self, index)) {
    if (property->name == CmpiName(name))
      return readAt(instance, property->name, property->value, nullptr, status);
    ++index;
  }
  return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

CMPICount instanceGetPropertyCount(const CMPIInstance* instance, CMPIStatus* status) {
  const FakeInstance& self = as<FakeInstance>(instance);
  answer(status);
  return static_cast<CMPICount>(self.value.properties().size() + self.prefilled.size());
}

CMPIStatus instanceSetProperty(const CMPIInstance* instance, const char* name, const CMPIValue* value,
                               CMPIType type) {
  FakeInstance& self = as<FakeInstance>(instance);
  if (!self.isWanted(name)) return kOk;
  const bool wasThere =
      std::erase_if(self.prefilled, [&](const Property& each) { return each.name == CmpiName(name); }) > 0;
  if (wasThere && !value) {
    if (self.value.path().findKey(name)) of(instance).violation(std::string("a key set to null: ") + name);
  } else {
    self.value.addProperty(name, readValue(value, type));
  }
  return kOk;
}

CMPIStatus instanceSetPropertyFilter(const CMPIInstance* instance, const char** names, const char** keys) {
  FakeInstance& self = as<FakeInstance>(instance);
  self.filter.reset();
  if (!names) return kOk;
  // Some object managers answer so, and some lose the keys.
  if (!keys) return {CMPI_RC_ERR_FAILED, nullptr};
  self.filter.emplace();
  for (; *names; ++names) self.filter->emplace_back(*names);
  std::erase_if(self.prefilled, [&](const Property& each) { return !self.isWanted(each.name); });
  return kOk;
}

CMPIObjectPath* instanceGetObjectPath(const CMPIInstance* instance, CMPIStatus* status) {
  answer(status);
  return of(instance).make<FakeObjectPath>(as<FakeInstance>(instance).value.path());
}

constexpr CMPIInstanceFT instanceTable(decltype(CMPIInstanceFT::setPropertyFilter) setPropertyFilter) {
  return {CMPIVersion200,
          Tables::release<FakeInstance, CMPIInstance>,
          Tables::clone<FakeInstance, CMPIInstance>,
          instanceGetProperty,
          instanceGetPropertyAt,
          instanceGetPropertyCount,
          instanceSetProperty,
          instanceGetObjectPath,
          setPropertyFilter,
          nullptr,
          nullptr};
}
constexpr CMPIInstanceFT kInstanceTable = instanceTable(instanceSetPropertyFilter);
constexpr CMPIInstanceFT kUnfilteredInstanceTable = instanceTable(nullptr);

}  // namespace

FakeInstance::FakeInstance(FakeBroker& broker, CmpiCpp::CmpiInstance theValue)
    : CMPIInstance{&broker, broker.habits().filtersInstances ? &kInstanceTable : &kUnfilteredInstanceTable},
      value(std::move(theValue)) {}

bool FakeInstance::isWanted(const CmpiName& name) const {
  return !filter || std::find(filter->begin(), filter->end(), name) != filter->end();
}

CmpiCpp::CmpiInstance FakeInstance::asSent() const {
  CmpiCpp::CmpiInstance sent = value;
  for (const Property& each : prefilled) sent.addProperty(each.name, each.value);
  return sent;
}

}  // namespace ZEB::test
