#include "tree/PropertyView.h"

#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {

namespace {

/// A value, or the first element of an array; null when there is none.
const CMPIData* firstOf(const CMPIData& value) {
  if (isNull(value)) return nullptr;
  if (!isArray(value.type)) return &value;
  const ArrayBody& array = as<Array>(value.value.array)->body();
  return array.count == 0 || isNull(array.elements[0]) ? nullptr : &array.elements[0];
}

std::optional<std::uint64_t> numberOf(const CMPIData* data) {
  return data && integerRange(data->type) ? std::optional(unsignedOf(*data)) : std::nullopt;
}

}  // namespace

void PropertyPlaces::lookUp(const ClassDef& classDef) {
  _class = &classDef;
  _places.clear();
  for (const char* const name : _names) {
    const auto found = classDef.propertyIndex.find(name);
    _places.push_back(found == classDef.propertyIndex.end() ? std::nullopt : std::optional(found->second));
  }
}

std::optional<std::uint64_t> PropertyPlaces::numberAt(const InstanceBody& body,
                                                      std::optional<std::uint16_t> place) {
  const std::uint16_t position = place ? body.positions[*place] : std::uint16_t{0};
  return position == 0 ? std::nullopt : numberOf(firstOf(body.properties.items[position - 1].data));
}

const CMPIData* PropertyView::find(std::string_view name) const {
  const NamedValue* const value = _body.properties.find(name);
  return value ? firstOf(value->data) : nullptr;
}

std::string PropertyView::path() const {
  return formatPath(*_body.path);
}

std::string PropertyView::text(std::string_view name) const {
  const CMPIData* const data = find(name);
  return data && data->type == CMPI_string ? std::string(textOf(data->value.string)) : std::string();
}

std::vector<std::string> PropertyView::texts(std::string_view name) const {
  std::vector<std::string> all;
  const NamedValue* const value = _body.properties.find(name);
  if (!value || isNull(value->data) || !isArray(value->data.type)) return all;
  const ArrayBody& array = as<Array>(value->data.value.array)->body();
  for (CMPICount i = 0; i < array.count; ++i) {
    if (array.elementType == CMPI_string && !isNull(array.elements[i]))
      all.emplace_back(textOf(array.elements[i].value.string));
  }
  return all;
}

std::optional<std::uint64_t> PropertyView::number(std::string_view name) const {
  return numberOf(find(name));
}

std::optional<bool> PropertyView::flag(std::string_view name) const {
  const CMPIData* const data = find(name);
  return data && data->type == CMPI_boolean ? std::optional(data->value.boolean != 0) : std::nullopt;
}

std::optional<double> PropertyView::time(std::string_view name) const {
  constexpr double kMicroseconds = 1e6;
  const CMPIData* const data = find(name);
  if (!data || data->type != CMPI_dateTime) return std::nullopt;
  const DateTimeBody& body = as<DateTime>(data->value.dateTime)->body();
  if (body.interval) return std::nullopt;
  return static_cast<double>(body.microseconds) / kMicroseconds;
}

std::string PropertyView::reference(std::string_view name) const {
  const CMPIData* const data = find(name);
  return data && data->type == CMPI_ref ? formatPath(as<ObjectPath>(data->value.ref)->body()) : std::string();
}

std::string PropertyView::meaning(std::string_view name) const {
  const auto value = number(name);
  if (!value) return {};
  const PropertyDef* const property = _body.classDef->property(name);
  const auto meant = property ? property->valueText(static_cast<std::int64_t>(*value)) : std::nullopt;
  return meant ? std::string(*meant) : std::to_string(*value);
}

}  // namespace ZebManager
