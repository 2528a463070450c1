#include "alertmanager/AlertmanagerSettings.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "indications/Destination.h"

namespace ZebManager {
namespace {

bool isLabelName(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
  return !name.empty() && isLetter(name[0]) &&
         std::ranges::all_of(name, [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); });
}

}  // namespace

bool isAlertmanagerUrl(const std::string& url) {
  return isUsableDestination(url) && url.find_first_of("?#") == std::string::npos;
}

bool readLabel(const std::string& text, std::pair<std::string, std::string>& label) {
  constexpr std::array kOwn = {"alertname", "severity", "interface", "team"};
  const std::size_t sign = text.find('=');
  if (sign == std::string::npos || sign + 1 == text.size()) return false;
  label = {text.substr(0, sign), text.substr(sign + 1)};
  return isLabelName(label.first) && std::ranges::find(kOwn, label.first) == kOwn.end();
}

}  // namespace ZebManager
