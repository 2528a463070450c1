#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// Files as sysfs has them. What cannot be looked at is not there: nothing throws for a file that the system
/// keeps to itself.
namespace ZEB::ethernet {

/// The first 64 KiB, or what of them can be read.
std::vector<std::byte> contents(const std::filesystem::path& file);

/// The first line; nothing when it is empty.
std::optional<std::string> line(const std::filesystem::path& file);

/// A number that a text begins with.
template <class T>
std::optional<T> leadingNumber(std::string_view text, int base = 10) {
  T value{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

/// A number as sysfs writes them: decimal, or hexadecimal with or without "0x".
template <class T>
std::optional<T> number(const std::filesystem::path& file, int base) {
  const auto text = line(file);
  return text ? leadingNumber<T>(std::string_view(*text).substr(text->starts_with("0x") ? 2 : 0), base)
              : std::nullopt;
}

bool isThere(const std::filesystem::path& file);

/// Without symbolic links; empty when there is no such file.
std::filesystem::path resolved(const std::filesystem::path& file);

/// The first value that `find` has for the path of a folder's entry.
template <class Find>
auto findEntry(const std::filesystem::path& folder, Find find) -> decltype(find(folder)) {
  std::error_code error;
  const std::filesystem::directory_iterator end;
  for (std::filesystem::directory_iterator entry(folder, error); !error && entry != end;
       entry.increment(error)) {
    if (auto found = find(entry->path())) return found;
  }
  return std::nullopt;
}

}  // namespace ZEB::ethernet
