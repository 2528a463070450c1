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
constexpr char kSeconds[] = "300";  // that a slow machine may take
constexpr std::chrono::seconds kSoon{2};

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

Explanations::~Explanations() {
  _stopping.writing = {};
  if (_thread.joinable()) _thread.join();
}

std::string Explanations::find(const std::string& path) const {
  const ZEB::TemporaryFolder folder;
  const std::string recording = folder / "recording.json";
  std::ofstream(recording) << _record();
  std::vector<std::string> arguments = _arguments;
  arguments.insert(arguments.end(), {"--source", recording, "explain", path});
  const Aside aside{folder.path(), _stopping.reading.get()};
  return outputOf("zebcim", arguments, &aside);
}

void Explanations::work(const std::string& path) {
  Found found;
  try {
    found.json = find(path);
  } catch (const std::exception& error) {
    found.failure = error.what();
  }
  const std::lock_guard lock(_mutex);
  found.made = Clock::now();
  if (_found.size() >= kMost) _found.clear();
  _found[path] = std::move(found);
  _underWay.clear();
  _done.notify_all();
}

void Explanations::begin(const std::string& path) {
  if (_thread.joinable()) _thread.join();  // it has nothing more to do
  _thread = std::thread([this, path] { work(path); });
  _underWay = path;
}

std::optional<std::string> Explanations::of(const std::string& path) {
  Arena arena;
  parsePath(arena, _classes, kNameSpace, path);  // what is none never becomes an argument
  std::unique_lock lock(_mutex);
  std::erase_if(_found, [](const auto& one) { return Clock::now() - one.second.made > kFresh; });
  if (!_found.contains(path) && _underWay.empty()) begin(path);
  if (_underWay == path) _done.wait_for(lock, kSoon, [&] { return _underWay != path; });
  const auto found = _found.find(path);
  if (found == _found.end()) return std::nullopt;
  if (found->second.failure.empty()) return found->second.json;
  const ManagerError error(found->second.failure);
  _found.erase(found);
  throw error;
}

}  // namespace ZebManager
