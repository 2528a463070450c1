#include "query/LikePattern.h"

#include <algorithm>
#include <cstdint>

namespace ZebManager {
namespace {

/// Takes one character. Bytes that are no UTF-8 count one by one.
std::uint32_t takeCharacter(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  text.remove_prefix(1);
  const int more = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : lead >= 0xc0 ? 1 : 0;
  std::uint32_t character = lead;
  for (int i = 0; i < more && !text.empty() && (static_cast<unsigned char>(text.front()) & 0xc0) == 0x80;
       ++i) {
    character = (character << 8) | static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
  }
  return character;
}

bool isInSet(std::uint32_t character, std::string_view set) {
  const bool inverted = set.starts_with('^');
  if (inverted) set.remove_prefix(1);
  bool found = false;
  while (!set.empty()) {
    const std::uint32_t low = takeCharacter(set);
    std::uint32_t high = low;
    if (set.size() > 1 && set.front() == '-') {
      set.remove_prefix(1);
      high = takeCharacter(set);
    }
    found |= low <= character && character <= high;
  }
  return found != inverted;
}

/// Takes from both what stands for one character; false when they differ.
bool takeOne(std::string_view& text, std::string_view& pattern) {
  if (text.empty() || pattern.empty()) return false;
  const std::uint32_t character = takeCharacter(text);
  const std::size_t close = pattern.front() == '[' ? pattern.find(']', 1) : std::string_view::npos;
  if (close != std::string_view::npos) {
    const std::string_view set = pattern.substr(1, close - 1);
    pattern.remove_prefix(close + 1);
    return isInSet(character, set);
  }
  const std::uint32_t wanted = takeCharacter(pattern);
  return wanted == '_' || wanted == character;
}

}  // namespace

// After a failure the last % takes one character more; the ones before it need no other try.
bool isLike(std::string_view text, std::string_view pattern) {
  bool open = false;
  std::string_view textAfter;
  std::string_view patternAfter;
  while (!text.empty() || !pattern.empty()) {
    if (pattern.starts_with('%')) {
      pattern.remove_prefix(1);
      open = true;
      textAfter = text;
      patternAfter = pattern;
    } else if (!takeOne(text, pattern)) {
      if (!open || textAfter.empty()) return false;
      takeCharacter(textAfter);
      text = textAfter;
      pattern = patternAfter;
    }
  }
  return true;
}

}  // namespace ZebManager
