#include "Unit.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "Ground.h"
#include "posix/Arguments.h"
#include "posix/Pipe.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

constexpr int kOutputPatienceMs = 60'000;

pid_t parentOf(pid_t process) {
  const auto status = statusOf(process);
  const auto found = status.find("PPid");
  return found == status.end() ? 0 : std::stoi(found->second);
}

std::vector<std::string> withMemory(std::size_t bytes, std::vector<std::string> words) {
  if (bytes != 0) words.insert(words.begin(), {"/usr/bin/prlimit", "--as=" + std::to_string(bytes)});
  return words;
}

std::vector<std::string> withRights(const std::string& bounding, const std::vector<std::string>& more,
                                    const std::vector<std::string>& words) {
  std::vector<std::string> all = {"/usr/bin/setpriv", "--no-new-privs", "--inh-caps=-all",
                                  "--bounding-set=" + bounding};
  all.insert(all.end(), more.begin(), more.end());
  all.insert(all.end(), words.begin(), words.end());
  return all;
}

/// Kilobytes that a process has to itself, with its part of what it shares.
std::size_t proportionalKilobytes(pid_t process) {
  std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
  for (std::string word; rollup >> word;) {
    if (word != "Pss:") continue;
    std::size_t amount = 0;
    rollup >> amount;
    return amount;
  }
  return 0;
}

}  // namespace

std::map<std::string, std::string> statusOf(pid_t process) {
  std::ifstream lines("/proc/" + std::to_string(process) + "/status");
  std::map<std::string, std::string> found;
  for (std::string name, value; std::getline(lines, name, ':') && std::getline(lines, value);) {
    found[name] = value.substr(std::min(value.size(), value.find_first_not_of(" \t")));
  }
  return found;
}

void Unit::start(std::vector<std::string> words, int output) {
  const ZEB::FileDescriptor errors(
      open((_folder / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  _programs.push_back(std::make_unique<ZEB::ChildProcess>([&] {
    dup2(errors.get(), STDERR_FILENO);
    dup2(output < 0 ? errors.get() : output, STDOUT_FILENO);
    execv(words.front().c_str(), ZEB::argumentsOf(words).data());
    return 127;
  }));
}

Unit::Unit(const UnitOptions& options) {
  std::filesystem::permissions(_folder.path(), std::filesystem::perms(0755));
  configure(options);
  std::vector<std::string> plugin = {ZEB_CIM, "--timeout", "0", "--plugin", ZEB_REAL_PLUGIN};
  plugin.insert(plugin.end(), options.plugin.begin(), options.plugin.end());
  plugin.emplace_back("provide");
  listen("plugin", "-all,+net_admin", plugin, options);
  listen("login", "-all,+audit_write", {ZEB_CIM_LOGIN, (_folder / "zebcim.toml").string()}, options);
  serve(options);
}

Unit::~Unit() {
  while (!_programs.empty()) _programs.pop_back();
  const std::string said = log();
  for (const char* const tool : {"ThreadSanitizer", "AddressSanitizer", "runtime error: "}) {
    if (said.find(tool) != std::string::npos) ADD_FAILURE() << said;
  }
}

void Unit::configure(const UnitOptions& options) {
  for (const char* const folder : {"pam", "store", "state", "run"})
    std::filesystem::create_directories(_folder / folder);
  for (const char* const folder : {"state", "run"}) {
    if (chown((_folder / folder).c_str(), kServerUser, kServerUser) != 0) throw std::runtime_error("chown");
  }
  std::ofstream(_folder / "pam/zebcim") << options.stack;
  std::ofstream(_folder / "zebcim.toml")
      << "[access]\npam-folder = \"" << (_folder / "pam").string() << "\"\n[state]\ndirectory = \""
      << (options.state.empty() ? (_folder / "state").string() : options.state) << "\"\n"
      << options.settings;
}

/// Returns when the socket is there.
void Unit::listen(const std::string& kind, const std::string& right, const std::vector<std::string>& words,
                  const UnitOptions& options) {
  const std::string socket = (_folder / kind).string();
  const auto started = withRights(right, {}, words);
  std::vector<std::string> all = {"/usr/bin/systemd-socket-activate",
                                  "--accept",
                                  "--listen=" + socket,
                                  "-EZEB_STORE_DIR=" + (_folder / "store").string(),
                                  "-EZEB_RUN_DIR=" + (_folder / "store").string(),
                                  "-EZEB_LOG_TARGET=stderr",
                                  "-EZEB_LOG_LEVEL=" + options.logLevel};
  // Nothing else of the environment is handed on.
  for (const char* const name : {"ASAN_OPTIONS", "TSAN_OPTIONS"}) {
    if (const char* const value = std::getenv(name)) all.push_back(std::string("-E") + name + "=" + value);
  }
  all.insert(all.end(), started.begin(), started.end());
  start(withMemory(kind == "plugin" ? options.addressSpace : 0, all));
  for (int round = 0; chown(socket.c_str(), kServerUser, kServerUser) != 0; ++round) {
    if (round > 2000) throw std::runtime_error("no socket " + socket);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

void Unit::serve(const UnitOptions& options) {
  ZEB::Pipe output = ZEB::makePipe();
  const std::string user = std::to_string(kServerUser);
  start(withMemory(
            options.addressSpace,
            withRights("-all", {"--reuid=" + user, "--regid=" + user, "--clear-groups"},
                       {"/usr/bin/env", "ZEB_RUN_DIR=" + (_folder / "run").string(), ZEB_CIM, "serve",
                        "--helpers", _folder.path().string(), "--config", (_folder / "zebcim.toml").string(),
                        "--http", options.http, "--https", "127.0.0.1:0"})),
        output.writing.get());
  output.writing = {};
  std::string text;
  while (!_addresses.contains("https")) {
    pollfd ready{output.reading.get(), POLLIN, 0};
    std::array<char, 512> buffer{};
    const ssize_t got = poll(&ready, 1, kOutputPatienceMs) == 1
                            ? read(output.reading.get(), buffer.data(), buffer.size())
                            : 0;
    if (got <= 0) throw std::runtime_error("the server does not start: " + this->log());
    text.append(buffer.data(), static_cast<std::size_t>(got));
    std::istringstream lines(text);
    for (std::string kind, address; lines >> kind >> address && lines.peek() == '\n';)
      _addresses[kind] = address;
  }
}

int Unit::stop() {
  _programs.back()->kill(SIGTERM);
  return _programs.back()->wait();
}

std::string Unit::log() const {
  return ZEB::test::contentOf(_folder / "log");
}

/// Children come behind their parents here, since numbers grow but for a wrap that tests do not live to see.
std::vector<pid_t> Unit::all() const {
  std::set<pid_t> numbers;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    if (std::all_of(name.begin(), name.end(), isdigit)) numbers.insert(std::stoi(name));
  }
  std::vector<pid_t> found;
  for (const auto& program : _programs) found.push_back(program->id());
  for (const pid_t number : numbers) {
    if (std::find(found.begin(), found.end(), parentOf(number)) != found.end()) found.push_back(number);
  }
  return found;
}

std::vector<pid_t> Unit::processes(const std::string& name) const {
  std::vector<pid_t> found;
  for (const pid_t process : all()) {
    if (statusOf(process)["Name"] == name) found.push_back(process);
  }
  return found;
}

std::size_t Unit::memory() const {
  std::size_t sum = 0;
  for (const pid_t process : all()) sum += proportionalKilobytes(process);
  return sum * 1024;
}

}  // namespace ZebManager
