#include "kernel/SysFiles.h"

#include <fstream>

namespace ZEB::ethernet {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestFile = std::size_t{64} * 1024;

}  // namespace

std::vector<std::byte> contents(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::vector<std::byte> bytes(kLargestFile);
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(in.bad() ? 0 : static_cast<std::size_t>(in.gcount()));
  return bytes;
}

std::optional<std::string> line(const fs::path& file) {
  std::ifstream in(file);
  std::string text;
  if (!std::getline(in, text) || text.empty()) return std::nullopt;
  return text;
}

bool isThere(const fs::path& file) {
  std::error_code error;
  return fs::exists(file, error);
}

fs::path resolved(const fs::path& file) {
  std::error_code error;
  const fs::path path = fs::canonical(file, error);
  return error ? fs::path() : path;
}

}  // namespace ZEB::ethernet
