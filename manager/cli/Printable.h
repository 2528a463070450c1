// Text from outside on its way to a terminal.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace ZebManager {

/// With control characters replaced, so that no value can steer the terminal or end a line.
inline std::string printable(std::string_view text) {
  std::string shown(text);
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; },
      '?');
  return shown;
}

}  // namespace ZebManager
