// The words and colours that commands share.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZebManager {

enum class Tone { Plain, Strong, Faint, Good, Warning, Bad };

/// The text with the tone's escape sequences around it where colour is wanted.
std::string toned(const std::string& text, Tone tone, bool colour);

/// How an operational status is shown.
Tone toneOfStatus(std::optional<std::uint64_t> status);
/// What an operational status says of a port's link; empty when it says nothing.
const char* linkWords(std::optional<std::uint64_t> status);
/// "10 Gbit/s"; empty for no speed.
std::string speedWords(std::uint64_t bitsPerSecond);

/// Columns of a text: characters, not bytes.
std::size_t widthOf(std::string_view text);
/// A text with blanks behind it, `width` bytes or more.
std::string padded(std::string text, std::size_t width);
/// A text that takes no more columns than `width`; 0 for all of it.
std::string cut(const std::string& text, std::size_t width);
/// Lines of at most `width` columns, parted between words; all but the first begin with blanks. 0: one line.
std::string wrapped(const std::string& text, std::size_t width);

}  // namespace ZebManager
