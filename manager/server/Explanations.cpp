#include "server/Explanations.h"

#include <fstream>

#include "broker/Broker.h"
#include "cli/ProgramOutput.h"
#include "posix/TemporaryFolder.h"
#include "values/ObjectPathText.h"

namespace ZebManager {
namespace {

constexpr std::chrono::seconds kFresh{60};
constexpr std::size_t kMost = 64;
constexpr char kSeconds[] = "60";

}  // namespace

Explanations::Explanations(const Options& options, const ClassRepository& classes,
                           std::function<std::string()> record)
    : _classes(classes),
      _record(std::move(record)),
      _arguments{"--timeout", kSeconds, "--json", "--standalone"} {
  const auto add = [&](const char* name, const std::string& value) {
    if (!value.empty()) _arguments.insert(_arguments.end(), {name, value});
  };
  add("--plugin", options.plugin);
  add("--schema", options.schema);
  if (options.includeVirtual) _arguments.emplace_back("--include-virtual");
}

std::optional<std::string> Explanations::kept(const std::string& path) {
  const std::lock_guard lock(_mutex);
  std::erase_if(_kept, [](const auto& one) { return Clock::now() - one.second.made > kFresh; });
  const auto found = _kept.find(path);
  return found == _kept.end() ? std::nullopt : std::optional(found->second.json);
}

std::string Explanations::find(const std::string& path) const {
  const ZEB::TemporaryFolder folder;
  const std::string recording = folder / "recording.json";
  std::ofstream(recording) << _record();
  std::vector<std::string> arguments = _arguments;
  arguments.insert(arguments.end(), {"--source", recording, "explain", path});
  return outputOf("zebcim", arguments);
}

std::optional<std::string> Explanations::of(const std::string& path) {
  Arena arena;
  parsePath(arena, _classes, kNameSpace, path);  // what is none never becomes an argument
  if (auto known = kept(path)) return known;
  const std::unique_lock working(_working, std::try_to_lock);
  if (!working) return std::nullopt;
  std::string json = find(path);
  const std::lock_guard lock(_mutex);
  if (_kept.size() >= kMost) _kept.clear();
  _kept[path] = {json, Clock::now()};
  return json;
}

}  // namespace ZebManager
