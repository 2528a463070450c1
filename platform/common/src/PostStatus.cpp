#include <exception>
#include <nlohmann/json.hpp>

#include "common/RunFile.h"
#include "common/ZEBUtil.h"

namespace ZEB {
namespace {

using Json = nlohmann::ordered_json;
using CmpiCpp::CmpiData;

Json toJson(const CmpiData& data) {
  if (data.isNull()) return nullptr;
  if ((data.type() & CMPI_ARRAY) != 0) {
    Json list = Json::array();
    for (const CmpiData& element : data.asArray().elements()) list.push_back(toJson(element));
    return list;
  }
  switch (data.type()) {
    case CMPI_boolean:
      return data.asBoolean();
    case CMPI_string:
      return data.asString();
    case CMPI_dateTime:
      return data.asDateTime().str();
    case CMPI_ref:
      return data.asReference().str();
    case CMPI_real64:
      return data.asReal();
    case CMPI_sint8:
    case CMPI_sint16:
    case CMPI_sint32:
    case CMPI_sint64:
      return data.asSigned();
    default:
      return data.asUnsigned();
  }
}

std::string statusText(const CmpiCpp::CmpiInstance& instance) {
  Json status{{"class", instance.className().str()}, {"path", instance.path().str()}};
  Json& properties = status["properties"] = Json::object();
  for (const auto& property : instance.properties()) {
    properties[property.name.str()] = toJson(property.value);
  }
  // Text that is no UTF-8 is somebody else's mistake and must not cost the file.
  return status.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace

void ZEBUtil::postStatus(const Logger& logger, const CmpiCpp::CmpiContext& /*context*/,
                         const CmpiCpp::CmpiInstance& instance) {
  try {
    replaceRunFile("status.json", statusText(instance));
  } catch (const std::exception& error) {
    logger.warn("the status cannot be posted: %s", error.what());
  }
}

}  // namespace ZEB
