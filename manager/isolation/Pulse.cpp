#include "isolation/Pulse.h"

#include <algorithm>
#include <charconv>

#include "isolation/Frame.h"

namespace ZebManager {
namespace {

std::uint64_t numberOf(const std::string& text) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) throw FrameError("a pulse without a number");
  return number;
}

}  // namespace

bool Pulse::anyAwake() const {
  return othersAwake || std::any_of(calls.begin(), calls.end(), [](const auto& call) { return call.awake; });
}

std::string pack(const Pulse& pulse) {
  std::vector<std::string> texts = {pulse.othersAwake ? "1" : "0"};
  for (const Pulse::Performed& call : pulse.calls) {
    texts.insert(texts.end(),
                 {std::to_string(call.number), std::to_string(call.processorTime), call.awake ? "1" : "0"});
  }
  return packTexts(texts);
}

Pulse unpackPulse(std::string_view packed) {
  const std::vector<std::string> texts = unpackTexts(packed);
  if (texts.size() % 3 != 1) throw FrameError("a pulse that was cut off");
  Pulse pulse;
  pulse.othersAwake = numberOf(texts[0]) != 0;
  for (std::size_t i = 1; i < texts.size(); i += 3) {
    pulse.calls.push_back({numberOf(texts[i]), numberOf(texts[i + 1]), numberOf(texts[i + 2]) != 0});
  }
  return pulse;
}

}  // namespace ZebManager
