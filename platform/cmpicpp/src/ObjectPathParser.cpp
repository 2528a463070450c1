#include <algorithm>
#include <cctype>
#include <optional>

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiObjectPath.h"

namespace CmpiCpp {
namespace {

bool isName(std::string_view text) {
  const auto isNamePart = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_' || c >= 0x80; };
  return !text.empty() && std::ranges::all_of(text, isNamePart);
}

bool isNameSpace(std::string_view text) {
  while (true) {
    const std::size_t slash = text.find('/');
    if (!isName(text.substr(0, slash))) return false;
    if (slash == std::string_view::npos) return true;
    text.remove_prefix(slash + 1);
  }
}

/// Takes from `rest` what stands before `mark`, and the mark; nothing where there is none.
std::optional<std::string_view> takeUntil(std::string_view& rest, char mark) {
  const std::size_t stop = rest.find(mark);
  if (stop == std::string_view::npos) return std::nullopt;
  const std::string_view taken = rest.substr(0, stop);
  rest.remove_prefix(stop + 1);
  return taken;
}

std::optional<std::string> takeQuoted(std::string_view& rest) {
  std::string value;
  if (!rest.starts_with('"')) return std::nullopt;
  for (std::size_t i = 1; i < rest.size(); ++i) {
    if (rest[i] == '"') {
      rest.remove_prefix(i + 1);
      return value;
    }
    if (rest[i] == '\\' && ++i == rest.size()) break;
    value += rest[i];
  }
  return std::nullopt;
}

}  // namespace

std::optional<CmpiObjectPath> CmpiObjectPath::parse(std::string_view text) {
  std::string_view host;
  if (text.starts_with("//")) {
    text.remove_prefix(2);
    host = takeUntil(text, '/').value_or("");
    if (host.empty()) return std::nullopt;
  }
  const auto nameSpace = takeUntil(text, ':');
  const auto className = takeUntil(text, '.');
  if (!nameSpace || !isNameSpace(*nameSpace) || !className || !isName(*className)) return std::nullopt;
  CmpiObjectPath path(*nameSpace, *className, host, {});
  while (true) {
    const auto name = takeUntil(text, '=');
    if (!name || !isName(*name) || path.findKey(*name)) return std::nullopt;
    const auto value = takeQuoted(text);
    if (!value) return std::nullopt;
    path.addKey(*name, std::string_view(*value));
    if (text.empty()) return path;
    if (!text.starts_with(',')) return std::nullopt;
    text.remove_prefix(1);
  }
}

}  // namespace CmpiCpp
