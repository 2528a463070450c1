// The page itself, as it was when this was built.
#pragma once

#include <span>
#include <string_view>

namespace ZebManager {

struct PageFile {
  std::string_view path;  ///< under which a browser asks for it
  std::string_view type;
  std::string_view bytes;
};

std::span<const PageFile> pageFiles();

}  // namespace ZebManager
