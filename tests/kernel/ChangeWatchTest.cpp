#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <mutex>
#include <set>

#include "KernelSnapshot.h"
#include "Namespace.h"
#include "ethernet/ChangeWatch.h"
#include "posix/FileDescriptor.h"
#include "support/RecordingLogSink.h"

// What is heard of addresses and routes, and what is said when nothing can be.

// The linker leads to these: there are no sockets when the test says so. A limit of descriptors would keep a
// sanitizer from looking at memory, too.
namespace {
std::atomic<bool> socketsRefused{false};
}

extern "C" {
int __real_socket(int domain, int type, int protocol);
int __wrap_socket(int domain, int type, int protocol) {
  if (!socketsRefused) return __real_socket(domain, type, protocol);
  errno = EMFILE;
  return -1;
}
}

namespace ZEB::test {
namespace {

constexpr const char* kTrouble =
    "changes of addresses and routes cannot be heard and are seen by polling alone: ";

/// The sockets among the descriptors of the process.
std::set<int> sockets() {
  std::set<int> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    if (read_symlink(entry.path(), error).string().starts_with("socket:"))
      found.insert(std::stoi(entry.path().filename()));
  }
  return found;
}

class ChangeWatchTest : public testing::Test {
 protected:
  void heard(const LayerChange& change) {
    ++calls;
    const std::lock_guard lock(mutex);
    interfaces.insert(change.interfaces.begin(), change.interfaces.end());
    anywhere |= change.anywhere;
  }
  std::set<std::uint32_t> heardOf() {
    const std::lock_guard lock(mutex);
    return interfaces;
  }

  RecordedLogger recorded;
  std::atomic<int> calls = 0;
  std::mutex mutex;
  std::set<std::uint32_t> interfaces;
  bool anywhere = false;
};

TEST_F(ChangeWatchTest, TellsOfWhichInterface) {
  IN_NAMESPACE([this] {
    makePairs(2);
    const std::uint32_t a0 = linkNamed(readAll(), "a0").index, a1 = linkNamed(readAll(), "a1").index;
    {
      ChangeWatch watch(recorded.logger, [this](const LayerChange& change) { heard(change); });
      ip("address add 192.0.2.1/24 dev a0");
      EXPECT_TRUE(eventually([&] { return heardOf().contains(a0); }));
      ip("address add 198.51.100.1/24 dev a1");
      ip("route add default via 198.51.100.2 dev a1");
      EXPECT_TRUE(eventually([&] { return heardOf().contains(a1); }));
    }
    EXPECT_FALSE(anywhere);
    EXPECT_TRUE(recorded.sink->texts().empty());
  });
}

TEST_F(ChangeWatchTest, ThatCannotBeOpenedSaysSoOnce) {
  socketsRefused = true;
  {
    ChangeWatch watch(recorded.logger, [](const LayerChange&) {});
  }
  socketsRefused = false;
  EXPECT_EQ(recorded.sink->texts(), std::vector<std::string>{std::string(kTrouble) + "Too many open files"});
}

TEST_F(ChangeWatchTest, WhoseSocketBreaksSaysSoOnceAndRests) {
  IN_NAMESPACE([this] {
    makePairs(1);
    const auto before = sockets();
    ChangeWatch watch(recorded.logger, [this](const LayerChange& change) { heard(change); });
    std::set<int> own = sockets();
    std::erase_if(own, [&](int socket) { return before.contains(socket); });
    ASSERT_EQ(own.size(), 1U);
    const FileDescriptor other(open("/dev/null", O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(dup3(other.get(), *own.begin(), O_CLOEXEC), *own.begin());
    // The wait is still on the old one.
    ip("address add 192.0.2.1/24 dev a0");
    EXPECT_TRUE(eventually([&] { return !recorded.sink->texts().empty(); }));
    const int called = calls;
    usleep(100'000);
    EXPECT_EQ(calls, called);
    EXPECT_EQ(recorded.sink->texts(), std::vector<std::string>{std::string(kTrouble) + "the socket fails"});
  });
}

}  // namespace
}  // namespace ZEB::test
