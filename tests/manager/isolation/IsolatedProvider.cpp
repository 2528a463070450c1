// What runs in the provider's process in tests: the test plug-in, and messages that name a deed.
//
// Environment: ZEB_TEST_STARTS names a file that gets a line for each start; ZEB_TEST_GATE names a file that,
// while it is there, makes starts fail (when it is empty) or hang. With the argument "parent" the program is
// a server that tells the number of its provider process and waits.
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <sstream>
#include <thread>

#include "isolation/ProviderProcess.h"
#include "plugin/PluginLibrary.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

std::mutex theLock;
std::atomic<int> underWay = 0;
std::atomic<int> mostAtOnce = 0;

void sleepFor(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

[[noreturn]] void waitForever() {
  for (;;) pause();
}

[[noreturn]] void crash() {
  signal(SIGSEGV, SIG_DFL);
  raise(SIGSEGV);
  std::abort();
}

std::string processNumber() {
  return std::to_string(getpid());
}

void appendTo(const char* variable, const std::string& line) {
  if (const char* file = std::getenv(variable)) std::ofstream(file, std::ios::app) << line << "\n";
}

void passGate() {
  const char* const gate = std::getenv("ZEB_TEST_GATE");
  std::error_code ignored;
  if (!gate || !std::filesystem::exists(gate, ignored)) return;
  if (std::filesystem::file_size(gate, ignored) > 0) waitForever();
  throw ManagerError("the gate is closed");
}

class TestProvider : public HostedProvider {
 public:
  TestProvider() { _plugin = std::make_unique<PluginLibrary>(_broker, ZEB_TEST_PLUGIN); }

  Broker& broker() override { return _broker; }

  std::string instanceElement(const Instance& indication) override {
    return std::string(textOf(indication.body().properties.find("Text")->data.value.string));
  }

  std::string perform(std::string_view message) override {
    const int now = ++underWay;
    for (int most = mostAtOnce; most < now && !mostAtOnce.compare_exchange_weak(most, now);) {
    }
    std::istringstream words{std::string(message)};
    std::string word;
    words >> word;
    const auto deed = deeds().find(word);
    if (deed == deeds().end()) throw ManagerError("unknown deed '" + word + "'");
    std::string answer = (this->*deed->second)(words);
    --underWay;
    return answer;
  }

 private:
  using Words = std::istringstream;
  using Deed = std::string (TestProvider::*)(Words&);

  static const std::map<std::string, Deed>& deeds() {
    static const std::map<std::string, Deed> table = {
        {"echo", &TestProvider::echo},
        {"pid", &TestProvider::pid},
        {"sleep", &TestProvider::sleep},
        {"hold", &TestProvider::hold},
        {"hold-for", &TestProvider::holdFor},
        {"locked", &TestProvider::locked},
        {"crash", &TestProvider::crashNow},
        {"crash-once", &TestProvider::crashOnce},
        {"exit", &TestProvider::exitNow},
        {"exit-thread", &TestProvider::exitInThread},
        {"big", &TestProvider::big},
        {"alert", &TestProvider::alert},
        {"most", &TestProvider::most},
        {"files", &TestProvider::files},
        {"alerts", &TestProvider::alerts},
        {"compute", &TestProvider::compute},
        {"hold-and-alert", &TestProvider::holdAndAlert},
    };
    return table;
  }

  std::string echo(Words& words) { return words.str().substr(5); }
  std::string pid(Words&) { return processNumber(); }
  std::string most(Words&) { return std::to_string(mostAtOnce); }

  std::string sleep(Words& words) {
    int milliseconds = 0;
    words >> milliseconds;
    sleepFor(milliseconds);
    return processNumber();
  }

  std::string hold(Words&) {
    const std::lock_guard lock(theLock);
    waitForever();
  }

  /// Keeps the lock and the processor for the time.
  std::string compute(Words& words) {
    int milliseconds = 0;
    words >> milliseconds;
    const std::lock_guard lock(theLock);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (std::chrono::steady_clock::now() < end) {
    }
    return processNumber();
  }

  std::string holdFor(Words& words) {
    const std::lock_guard lock(theLock);
    return sleep(words);
  }

  /// Waits for the time that is given, then for the lock.
  std::string locked(Words& words) {
    sleep(words);
    const std::lock_guard lock(theLock);
    appendTo("ZEB_TEST_LOCKED", "locked");
    return processNumber();
  }

  std::string crashNow(Words&) { crash(); }

  std::string crashOnce(Words& words) {
    std::string file;
    words >> file;
    if (std::filesystem::exists(file)) return processNumber();
    std::ofstream(file) << "x";
    crash();
  }

  std::string exitNow(Words&) { std::exit(1); }

  std::string exitInThread(Words&) {
    std::thread([] { std::exit(1); }).detach();
    waitForever();
  }

  std::string big(Words& words) {
    std::size_t size = 0;
    words >> size;
    std::string answer(size, 'x');
    answer.front() = 'a';
    answer.back() = 'z';
    return answer;
  }

  std::string alert(Words& words) {
    std::string text;
    words >> text;
    Arena arena;
    Args& in = *makeArgs(arena);
    const CMPIData value = dataOf(makeString(arena, text));
    in.ft->addArg(&in, "Text", &value.value, value.type);
    _broker.provider()
        .invokeMethod(*makePath(arena, kNameSpace, "T_Thing"), "Alert", in, *makeArgs(arena))
        .orThrow();
    return text;
  }

  /// The numbers from 0 on.
  std::string alerts(Words& words) {
    int count = 0;
    words >> count;
    for (int i = 0; i < count; ++i) {
      Words number(std::to_string(i));
      alert(number);
    }
    return {};
  }

  std::string holdAndAlert(Words& words) {
    holdFor(words);
    return alert(words);
  }

  /// What the process has open.
  std::string files(Words&) {
    std::string open;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code ignored;
      open += std::filesystem::read_symlink(entry.path(), ignored).string() + "\n";
    }
    return open;
  }

  ClassRepository _repository = ClassRepository::fromFile(ZEB_TEST_SCHEMA);
  Broker _broker{_repository};
  std::unique_ptr<PluginLibrary> _plugin;
};

std::unique_ptr<HostedProvider> load() {
  appendTo("ZEB_TEST_STARTS", "start");
  passGate();
  return std::make_unique<TestProvider>();
}

[[noreturn]] void beParent() {
  SupervisorOptions options;
  ProviderSupervisor supervisor(options, {});
  std::cerr << "provider " << supervisor.perform("pid", true).body << " runs" << std::endl;
  waitForever();
}

}  // namespace
}  // namespace ZebManager

int main(int argc, char**) {
  if (argc > 1) ZebManager::beParent();
  return ZebManager::runProviderProcess(ZebManager::kProviderSocket, ZebManager::load);
}
