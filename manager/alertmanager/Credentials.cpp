#include "alertmanager/Credentials.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr std::size_t kLongest = 16'384;

std::string lineOf(const std::string& file) {
  std::error_code ignored;
  if (std::filesystem::exists(file, ignored) && !std::filesystem::is_regular_file(file, ignored))
    throw ManagerError("'alertmanager.credentials' " + file + " is no file");  // one that waits for a writer
  std::ifstream in(file);
  std::string line;
  if (!in) throw ManagerError("cannot read 'alertmanager.credentials' " + file + ": " + std::strerror(errno));
  std::vector<char> bytes(kLongest + 1);
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  line.assign(bytes.data(), static_cast<std::size_t>(in.gcount()));
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' ')) line.pop_back();
  return line;
}

std::string base64(const std::string& text) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string coded;
  for (std::size_t at = 0; at < text.size(); at += 3) {
    unsigned bits = 0;
    for (std::size_t i = 0; i < 3; ++i)
      bits = bits << 8U | (at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U);
    for (std::size_t i = 0; i < 4; ++i)
      coded += at + i > text.size() ? '=' : kDigits[bits >> (18 - 6 * i) & 63U];
  }
  return coded;
}

}  // namespace

std::string authorizationIn(const std::string& file) {
  constexpr char kBasic[] = "Basic ", kBearer[] = "Bearer ";
  if (file.empty()) return {};
  const std::string line = lineOf(file);
  const bool printable = std::ranges::none_of(line, [](char c) { return c >= '\0' && c < ' '; });
  if (printable && line.size() <= kLongest) {
    const std::string value = line.substr(std::min(line.find(' '), line.size() - 1) + 1);
    if (line.starts_with(kBearer) && !value.empty()) return "Authorization: " + line;
    if (line.starts_with(kBasic) && value.find(':') != std::string::npos)
      return "Authorization: " + std::string(kBasic) + base64(value);
  }
  throw ManagerError("'alertmanager.credentials' " + file +
                     " has to hold one line, \"Basic USER:PASSWORD\" or \"Bearer TOKEN\"");
}

}  // namespace ZebManager
