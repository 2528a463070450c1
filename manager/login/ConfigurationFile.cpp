#include "login/ConfigurationFile.h"

#include <cerrno>
#include <cstring>
#include <fstream>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr std::size_t kLongestFile = 256U << 10;
/// Keys with dots stand as deep in each other as a line is long.
constexpr std::size_t kLongestLine = 4096;

[[noreturn]] void refuse(const std::string& file, const std::string& why) {
  throw ManagerError("cannot read the configuration " + file + ": " + why);
}

std::string contentOf(const std::string& file, bool mayLack) {
  std::ifstream in(file, std::ios::binary);
  if (!in && errno == ENOENT && mayLack) return {};
  std::string content(kLongestFile + 1, '\0');
  if (in) in.read(content.data(), static_cast<std::streamsize>(content.size()));
  if (!in.eof()) refuse(file, content.back() == '\0' ? std::strerror(errno) : "it is too long");
  content.resize(static_cast<std::size_t>(in.gcount()));
  return content;
}

void checkLines(const std::string& file, std::string_view content) {
  for (std::size_t number = 1; !content.empty(); ++number) {
    const std::size_t length = std::min(content.find('\n'), content.size() - 1) + 1;
    if (length > kLongestLine) refuse(file, "line " + std::to_string(number) + " is too long");
    content.remove_prefix(length);
  }
}

}  // namespace

toml::table readConfiguration(const std::string& file, bool mayLack) {
  const std::string content = contentOf(file, mayLack);
  checkLines(file, content);
  try {
    return toml::parse(content, file);
  } catch (const toml::parse_error& error) {
    throw ManagerError(file + ":" + std::to_string(error.source().begin.line) + ": " +
                       std::string(error.description()));
  }
}

}  // namespace ZebManager
