#include "InstanceText.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <map>

namespace ZEB::test {

using CmpiCpp::CmpiData;

namespace {

const std::map<CMPIType, std::string> kTypeNames{
    {CMPI_boolean, "boolean"}, {CMPI_uint8, "uint8"},   {CMPI_uint16, "uint16"},     {CMPI_uint32, "uint32"},
    {CMPI_uint64, "uint64"},   {CMPI_string, "string"}, {CMPI_dateTime, "datetime"}, {CMPI_ref, "reference"},
};

std::string bare(const CmpiData& value) {
  switch (value.type()) {
    case CMPI_boolean:
      return value.asBoolean() ? "true" : "false";
    case CMPI_string:
      return '"' + value.asString() + '"';
    case CMPI_dateTime:
      return value.asDateTime().str();
    case CMPI_ref:
      return value.asReference().str();
    default:
      return std::to_string(value.asUnsigned());
  }
}

}  // namespace

std::string textOf(const CmpiData& value) {
  const bool isArray = (value.type() & CMPI_ARRAY) != 0;
  const auto element = static_cast<CMPIType>(value.type() & ~CMPI_ARRAY);
  const auto type = kTypeNames.find(element);
  const std::string name = type == kTypeNames.end() ? "?" : type->second;
  if (value.isNull()) return name + " null";
  if (!isArray) return name + " " + bare(value);
  std::string text;
  for (const CmpiData& each : value.asArray().elements()) text += (text.empty() ? "" : ", ") + bare(each);
  return name + "[] {" + text + "}";
}

Table propertiesOf(const CmpiCpp::CmpiInstance& instance) {
  Table table;
  for (const auto& property : instance.properties()) {
    table.emplace_back(property.name.str(), textOf(property.value));
  }
  return table;
}

Table keysOf(const CmpiCpp::CmpiObjectPath& path) {
  Table table;
  for (const auto& key : path.keys()) table.emplace_back(key.name.str(), textOf(key.value));
  return table;
}

Table edited(Table table, const Table& changes) {
  for (const auto& [name, value] : changes) {
    const auto row = std::ranges::find(table, name, &Table::value_type::first);
    EXPECT_NE(row, table.end()) << name;
    if (row == table.end()) continue;
    if (value.empty()) {
      table.erase(row);
    } else {
      row->second = value;
    }
  }
  return table;
}

std::string hostName() {
  char name[256] = {};
  gethostname(name, sizeof name - 1);
  return name;
}

}  // namespace ZEB::test
