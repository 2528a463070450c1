#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <future>
#include <set>
#include <thread>
#include <vector>

#include "PlayedHost.h"
#include "UnloadFixture.h"
#include "posix/FileDescriptor.h"
#include "support/Length.h"

// Ends that come while the plug-in is at work. Each in a process of its own.

#ifdef ZEB_SANITIZE_THREAD
// A library that stays does so with the threads that it had.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
  return "report_thread_leaks=0";
}
#endif

namespace ZEB::test {
namespace {

#ifdef ZEB_SANITIZE_THREAD
constexpr int kEndings = 15;
#else
constexpr int kEndings = 60;
#endif

using namespace std::chrono_literals;
using testing::ExitedWithCode;

class EndingTest : public UnloadTest {
 protected:
  EndingTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(EndingTest, AProcessThatEndsUnderItsClientsKeepsItsStatus) {
  const auto body = [&](std::uint64_t round) {
    load();
    use();
    std::vector<std::thread> clients;
    for (int i = 0; i < 4; ++i) {
      clients.emplace_back([&] {
        for (;;) {
          {
            FakeBroker::Call call(broker);
            enumerate(call);
          }
          std::this_thread::sleep_for(10us);
        }
      });
    }
    std::this_thread::sleep_for(round % 20 * 1ms);
    std::exit(7);
  };
  for (const std::uint64_t round : sharedRounds(kEndings)) {
    EXPECT_EXIT(body(round), ExitedWithCode(7), "") << round;
  }
}

TEST_F(EndingTest, AProcessThatEndsInADeliveryOfTheTimersHangsNowhere) {
  const auto body = [&] {
    alarm(60);
    PlayedHost host(folder / "host.json");
    host.addPort(2, "eth0");
    host.play();
    configure("ZEB_SOURCE_FILE", host.file());
    configure("ZEB_AUTOSTART", "1");
    broker.bft.deliverIndication = [](const CMPIBroker*, const CMPIContext*, const char*,
                                      const CMPIInstance*) -> CMPIStatus { std::exit(5); };
    load();
    use();
    FakeBroker::Call call(broker);
    CMPIIndicationMI* indications =
        createIndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    call.enableIndications(indications);
    host.link("eth0").carrier = false;
    host.play();
    for (;;) pause();
  };
  EXPECT_EXIT(body(), ExitedWithCode(5), "");
}

/// A client that takes its time over the end of a result.
class SlowClient {
 public:
  SlowClient(FakeBroker& broker, std::function<CMPIrc(FakeBroker::Call&)> ask)
      : _answer(std::async(std::launch::async, [&broker, ask = std::move(ask)] {
          FakeBroker::Call call(broker);
          CMPIResultFT table = *call.result().ft;
          table.returnDone = [](const CMPIResult*) -> CMPIStatus {
            inside.set_value();
            goOn.get_future().wait();
            return {CMPI_RC_OK, nullptr};
          };
          call.result().ft = &table;
          return ask(call);
        })) {
    inside.get_future().wait();
  }
  CMPIrc letGo() {
    goOn.set_value();
    return _answer.get();
  }

 private:
  static inline std::promise<void> inside, goOn;
  std::future<CMPIrc> _answer;
};

TEST_F(EndingTest, TheLibraryStaysUnderACallThatDoesNotEnd) {
  const auto body = [&] {
    load();
    use();
    SlowClient client(broker, [this](FakeBroker::Call& call) { return enumerate(call); });
    std::this_thread::sleep_for(7s);
    dlclose(library);
    if (!isMapped()) _exit(1);
    if (client.letGo() != CMPI_RC_OK) _exit(2);
    FakeBroker::Call call(broker);
    _exit(enumerate(call) == CMPI_RC_OK ? 0 : 3);
  };
  EXPECT_EXIT(body(), ExitedWithCode(0), "");
}

TEST_F(EndingTest, TheLibraryGoesWhenTheCallThatWasUnderWayHasEnded) {
  const auto body = [&] {
    load();
    use();
    SlowClient client(broker, [this](FakeBroker::Call& call) { return enumerate(call); });
    auto closed = std::async(std::launch::async, [&] { return dlclose(library); });
    if (closed.wait_for(300ms) != std::future_status::timeout) _exit(1);
    if (client.letGo() != CMPI_RC_OK) _exit(2);
    _exit(closed.get() == 0 && !isMapped() ? 0 : 3);
  };
  EXPECT_EXIT(body(), ExitedWithCode(0), "");
}

// When it is unloaded nobody can know yet that it takes so long.
TEST_F(EndingTest, TheLibraryGoesWhenACallThatTakesLongHasEnded) {
  const auto body = [&] {
    load();
    use();
    SlowClient client(broker, [this](FakeBroker::Call& call) { return enumerate(call); });
    auto closed = std::async(std::launch::async, [&] { return dlclose(library); });
    if (closed.wait_for(7s) != std::future_status::timeout) _exit(1);
    if (client.letGo() != CMPI_RC_OK) _exit(2);
    _exit(closed.get() == 0 && !isMapped() ? 0 : 3);
  };
  EXPECT_EXIT(body(), ExitedWithCode(0), "");
}

/// The pipes among the descriptors of the process, by what they are opened for.
std::set<std::pair<int, int>> pipes() {
  std::set<std::pair<int, int>> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    const int descriptor = std::stoi(entry.path().filename());
    if (read_symlink(entry.path(), error).string().starts_with("pipe:"))
      found.emplace(descriptor, fcntl(descriptor, F_GETFL) & O_ACCMODE);
  }
  return found;
}

/// Every write to the pipe that stops the netlink thread fails from then on. The pipe is still open at both
/// ends: the thread notices nothing.
void breakStopPipe(const std::set<std::pair<int, int>>& before) {
  const FileDescriptor other(open("/dev/null", O_RDONLY | O_CLOEXEC));
  for (const auto& each : pipes()) {
    if (before.contains(each) || each.second != O_WRONLY) continue;
    if (fcntl(each.first, F_DUPFD_CLOEXEC, 0) < 0) _exit(90);
    dup3(other.get(), each.first, O_CLOEXEC);
  }
}

TEST_F(EndingTest, TheLibraryStaysWithAThreadThatCannotBeStopped) {
  for (const bool cleanedUp : {true, false}) {
    const auto body = [&] {
      const auto before = pipes();
      load();
      use();
      breakStopPipe(before);
      if (cleanedUp) {
        cleanupOnce();
        cleanupOnce();
      } else {
        std::this_thread::sleep_for(2500ms);
      }
      dlclose(library);
      _exit(isMapped() ? 0 : 2);
    };
    EXPECT_EXIT(body(), ExitedWithCode(0), "") << cleanedUp;
  }
}

}  // namespace
}  // namespace ZEB::test
