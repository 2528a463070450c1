// The words and colours that commands share.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

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

}  // namespace ZebManager
