#include "SchemaDefaults.h"

#include <stdexcept>

#include "cmpicpp/CmpiData.h"
#include "schema/ClassRepository.h"

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;

CmpiData valueOf(CMPIType type, const std::string& text) {
  switch (type) {
    case CMPI_boolean:
      return text == "true";
    case CMPI_uint16:
      return static_cast<std::uint16_t>(std::stoul(text));
    case CMPI_uint32:
      return static_cast<std::uint32_t>(std::stoul(text));
    case CMPI_string:
      return text;
    case CMPI_dateTime:
      return CmpiCpp::CmpiDateTime::parse(text).value();
    default:
      throw std::invalid_argument("a default of type " + std::to_string(type));
  }
}

}  // namespace

void declareSchemaDefaults(FakeBroker& broker) {
  static const auto schema = ZebManager::ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  for (const auto& def : schema.classes()) {
    std::vector<CmpiCpp::CmpiInstance::Property> defaults;
    for (const auto& property : def->properties) {
      if (!property.defaultValues) continue;
      defaults.push_back(
          {CmpiCpp::CmpiName(property.name), valueOf(property.type, property.defaultValues->at(0))});
    }
    if (!defaults.empty()) broker.declareDefaults(CmpiCpp::CmpiName(def->name), std::move(defaults));
  }
}

}  // namespace ZEB::test
