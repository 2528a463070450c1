// Room in a text that may become long.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

namespace ZebManager {

/// To be called before a piece is appended, of some KiB at most: has the text grow in larger steps than it
/// does by itself, as to copy megabytes takes as long as to write them. Room that is not used costs nothing.
inline void makeRoom(std::string& text) {
  constexpr std::size_t kPiece = 16U << 10;
  constexpr std::size_t kStep = 4;
  if (text.capacity() - text.size() < kPiece) text.reserve(kStep * std::max(text.capacity(), kPiece));
}

}  // namespace ZebManager
