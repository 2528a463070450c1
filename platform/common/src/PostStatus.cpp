#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>

#include "FileDescriptor.h"
#include "common/Configuration.h"
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

[[noreturn]] void throwErrno(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void writeAll(int file, const std::string& name, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throwErrno(name);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

/// Under a name of this process first, then renamed: a reader finds the old file or the new one.
void replaceFile(const std::string& file, const std::string& text) {
  const std::string temporary = file + "." + std::to_string(getpid());
  try {
    const FileDescriptor opened(
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (!opened) throwErrno(temporary);
    writeAll(opened.get(), temporary, text);
    if (fsync(opened.get()) != 0) throwErrno(temporary);
    if (std::rename(temporary.c_str(), file.c_str()) != 0) throwErrno(file);
  } catch (const std::system_error&) {
    unlink(temporary.c_str());
    throw;
  }
}

}  // namespace

void ZEBUtil::postStatus(const Logger& logger, const CmpiCpp::CmpiContext& /*context*/,
                         const CmpiCpp::CmpiInstance& instance) {
  const std::string directory = Configuration::current()->runDirectory;
  try {
    std::filesystem::create_directories(directory);
    replaceFile(directory + "status.json", statusText(instance));
  } catch (const std::exception& error) {
    logger.warn("the status cannot be posted: %s", error.what());
  }
}

}  // namespace ZEB
