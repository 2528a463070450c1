#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <syslog.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "ProviderFixture.h"
#include "ethernet/EthernetMRA.h"
#include "monitor/LinkWatch.h"
#include "monitor/NetlinkThread.h"
#include "posix/FileDescriptor.h"
#include "provider/EntryPoints.h"
#include "support/NetworkNamespace.h"
#include "support/ProcessCounts.h"
#include "support/RecordingLogSink.h"

// The system calls of the thread, made to fail on demand: the linker leads them here.
namespace {
enum class Failing { None, Pipe, Socket, Bind, Select, Recv };
std::atomic<Failing> failing{Failing::None};
/// Of the last socket that was bound.
std::atomic<int> boundSocket{-1};
std::atomic<std::uint32_t> boundGroups{0};
std::atomic<bool> sourcesGone{false};

bool fails(Failing call) {
  if (failing != call) return false;
  errno = EMFILE;
  return true;
}
}  // namespace

extern "C" {
int __real_pipe2(int*, int);
int __real_socket(int, int, int);
int __real_bind(int, const sockaddr*, socklen_t);
int __real_select(int, fd_set*, fd_set*, fd_set*, timeval*);
ssize_t __real_recv(int, void*, std::size_t, int);

int __wrap_pipe2(int* ends, int flags) {
  return fails(Failing::Pipe) ? -1 : __real_pipe2(ends, flags);
}
int __wrap_socket(int domain, int type, int protocol) {
  return domain == AF_NETLINK && fails(Failing::Socket) ? -1 : __real_socket(domain, type, protocol);
}
int __wrap_bind(int fd, const sockaddr* address, socklen_t size) {
  boundGroups = reinterpret_cast<const sockaddr_nl*>(address)->nl_groups;
  boundSocket = fd;
  return fails(Failing::Bind) ? -1 : __real_bind(fd, address, size);
}
int __wrap_select(int count, fd_set* readable, fd_set* writable, fd_set* exceptional, timeval* timeout) {
  return fails(Failing::Select) ? -1 : __real_select(count, readable, writable, exceptional, timeout);
}
ssize_t __wrap_recv(int fd, void* buffer, std::size_t size, int flags) {
  return fails(Failing::Recv) ? -1 : __real_recv(fd, buffer, size, flags);
}
int __real__ZN3ZEB11EthernetMRA9updateAllEv(ZEB::EthernetMRA*);
int __wrap__ZN3ZEB11EthernetMRA9updateAllEv(ZEB::EthernetMRA* self) {
  if (sourcesGone) _exit(4);
  return __real__ZN3ZEB11EthernetMRA9updateAllEv(self);
}
}

namespace ZEB::test {
namespace {

template <class Condition>
bool eventually(Condition condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

/// What goes to the system log is written to standard error, too, behind "zeb: ".
void showSystemLog() {
  openlog("zeb", LOG_PERROR, LOG_USER);
}

class NetlinkThreadTest : public testing::Test {
 protected:
  NetlinkThreadTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

  RecordedLogger recorded;
  LinkWatch watch;
  NetlinkThread::Handler handler = [this](int socketFd) { return watch.handleMessage(socketFd); };
};

TEST_F(NetlinkThreadTest, TheStopByteEndsTheThreadAndItsThreeDescriptorsAreClosed) {
  const auto descriptors = openDescriptors();
  const auto before = threads();
  {
    NetlinkThread thread(recorded.logger, handler);
    thread.start();
    // The pipe is there when the start returns, the socket soon after.
    EXPECT_GE(pipeFd[0], 0);
    EXPECT_GE(pipeFd[1], 0);
    EXPECT_TRUE(eventually([&] { return openDescriptors() == descriptors + 3; }));
    EXPECT_EQ(threads(), before + 1);
  }
  EXPECT_EQ(threads(), before);
  EXPECT_EQ(openDescriptors(), descriptors);
  EXPECT_EQ(pipeFd[0], -1);
  EXPECT_EQ(pipeFd[1], -1);
  EXPECT_EQ(recorded.sink->texts(),
            (std::vector<std::string>{"Entered StartNetlinkThread.", "In StartNetlinkThread.",
                                      "Netlink Thread Started", "wrote to pipeFd."}));
}

// In a thread of its own, so that the namespace goes with the test.
void inNewNamespace(const std::function<void()>& body) {
  bool entered = true;
  std::thread([&] {
    entered = enterNewNetworkNamespace();
    if (entered) body();
  }).join();
  if (!entered) GTEST_SKIP() << "making a network namespace is not allowed here";
}

TEST_F(NetlinkThreadTest, ALinkMessageRaisesTheFlag) {
  inNewNamespace([&] {
    NetlinkThread thread(recorded.logger, handler);
    thread.start();
    _netlinkEvent = false;
    // The message may come before the socket is there.
    EXPECT_TRUE(eventually([&] { return setLoopback(true) && setLoopback(false) && _netlinkEvent; }));
    _netlinkEvent = false;
  });
}

/// Addresses and routes have a socket of their own; what overruns is made good for by the next message.
TEST_F(NetlinkThreadTest, TheSocketHearsOfLinksAloneAndOverrunsInSilence) {
  boundSocket = -1;
  NetlinkThread thread(recorded.logger, handler);
  thread.start();
  ASSERT_TRUE(eventually([] { return boundSocket >= 0; }));
  EXPECT_EQ(boundGroups, std::uint32_t{RTMGRP_LINK});
  int silent = 0;
  socklen_t size = sizeof silent;
  ASSERT_EQ(getsockopt(boundSocket, SOL_NETLINK, NETLINK_NO_ENOBUFS, &silent, &size), 0);
  EXPECT_EQ(silent, 1);
}

TEST_F(NetlinkThreadTest, EveryLinkMessageComesThroughDescriptorsPastTheFirstThousand) {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlimit roomy{.rlim_cur = 2048, .rlim_max = limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &roomy), 0);
  std::vector<FileDescriptor> taken;
  while (taken.empty() || taken.back().get() < 1100)
    taken.emplace_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
  inNewNamespace([&] {
    NetlinkThread thread(recorded.logger, handler);
    thread.start();
    EXPECT_GT(pipeFd[0], 1024);
    _netlinkEvent = false;
    EXPECT_TRUE(eventually([&] { return setLoopback(true) && setLoopback(false) && _netlinkEvent; }));
    _netlinkEvent = false;
  });
  taken.clear();
  setrlimit(RLIMIT_NOFILE, &limit);
}

TEST_F(NetlinkThreadTest, WithoutAPipeTheThreadEndsAndTheStopperSaysSoOnce) {
  const auto before = threads();
  failing = Failing::Pipe;
  {
    NetlinkThread thread(recorded.logger, handler);
    thread.start();
    failing = Failing::None;
    EXPECT_EQ(pipeFd[1], -1);
  }
  EXPECT_EQ(threads(), before);
  EXPECT_EQ(recorded.sink->count("Invalid file descriptor"), 1U);
  EXPECT_EQ(recorded.sink->count("Unable to write to pipe fd"), 0U);
}

TEST_F(NetlinkThreadTest, WithoutAPipeTheSystemLogSaysWhy) {
  const auto body = [&] {
    showSystemLog();
    failing = Failing::Pipe;
    {
      NetlinkThread thread(recorded.logger, handler);
      thread.start();
    }
    _exit(0);
  };
  EXPECT_EXIT(body(), testing::ExitedWithCode(0),
              "zeb: Unable to open a pipe for pipeFd file descriptor Too many open files\n");
}

TEST_F(NetlinkThreadTest, WhenEveryWriteFailsNothingWaits) {
  // The thread goes on, so this happens in a process of its own.
  const auto body = [&] {
    auto thread = std::make_unique<NetlinkThread>(recorded.logger, handler);
    thread->start();
    const int writeEnd = pipeFd[1];
    pipeFd[1] = open("/dev/null", O_RDONLY | O_CLOEXEC);
    recorded.sink->clear();
    thread.reset();
    pipeFd[1] = writeEnd;
    const std::vector<std::string> expected{
        "Unable to write to pipe fd, result: -1, Error: Bad file descriptor",
        "Unable to write to pipe fd, result: -1, Error: Bad file descriptor",
        "Unable to write to pipe fd, result: -1, Error: Bad file descriptor", "Unable to write to pipe fd"};
    _exit(recorded.sink->texts() == expected ? 0 : 1);
  };
  EXPECT_EXIT(body(), testing::ExitedWithCode(0), "");
}

struct FatalCall {
  const char* name;
  Failing call;
  const char* message;
};

// To the system log, then to standard error.
const FatalCall kFatalCalls[] = {
    {"Socket", Failing::Socket,
     "zeb: Netlink socket failed\\. Unable to capture transient errors\\.\n"
     "Netlink socket failed\\. Unable to capture transient errors\\.: Too many open files\n"},
    {"Bind", Failing::Bind,
     "zeb: Netlink bind failed\\. Unable to capture transient errors\\.\n"
     "bind failed: Too many open files\n"},
    {"Select", Failing::Select,
     "zeb: Waiting for event notification from netlink\\. \n"
     "zeb: Error in select\\(\\)\n"
     "Error in select\\(\\): Too many open files\n"},
    {"Recv", Failing::Recv,
     "zeb: Waiting for event notification from netlink\\. \n"
     "zeb: Netlink recv failed\\. Unable to capture transient errors\\.\n"
     "recv failed: Too many open files\n"},
};

class FatalCallTest : public NetlinkThreadTest, public testing::WithParamInterface<FatalCall> {};

TEST_P(FatalCallTest, EndsTheProcessWithStatusOne) {
  const auto body = [&] {
    if (!enterNewNetworkNamespace()) _exit(2);
    showSystemLog();
    failing = GetParam().call;
    NetlinkThread thread(recorded.logger, handler);
    thread.start();
    for (;;) {
      setLoopback(true);
      setLoopback(false);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  };
  EXPECT_EXIT(body(), testing::ExitedWithCode(1), GetParam().message);
}

std::string nameOfCall(const testing::TestParamInfo<FatalCall>& each) {
  return each.param.name;
}

INSTANTIATE_TEST_SUITE_P(EveryCall, FatalCallTest, testing::ValuesIn(kFatalCalls), nameOfCall);

class LivingProviderTest : public ProviderTest {
 protected:
  LivingProviderTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

// The static objects go on the very thread that the provider otherwise waits for, its timer with them.
TEST_F(LivingProviderTest, GoesWhenItsThreadEndsTheProcess) {
  const auto body = [&] {
    if (!enterNewNetworkNamespace()) _exit(2);
    configure("ZEB_AUTOSTART", "1");
    setProcessLogSink(makeStandardErrorSink(), LogLevel::Info);
    FakeBroker::Call call(broker);
    if (!_Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr)) _exit(3);
    failing = Failing::Recv;
    for (;;) {
      setLoopback(true);
      setLoopback(false);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  };
  EXPECT_EXIT(body(), testing::ExitedWithCode(1),
              "recv failed: Too many open files\n(.*\n)*.*dxtor\\(\\) unloading provider");
}

TEST_F(LivingProviderTest, LeavesNoSourceToAThreadThatOutlivesIt) {
  const auto body = [&] {
    if (!enterNewNetworkNamespace()) _exit(2);
    FakeBroker::Call call(broker);
    CMPIInstanceMI* const made =
        _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    if (!made) _exit(3);
    // Nothing reaches the thread.
    pipeFd[0] = -1;
    pipeFd[1] = open("/dev/null", O_RDONLY | O_CLOEXEC);
    made->ft->cleanup(made, &call.context(), 1);
    sourcesGone = true;
    _netlinkEvent = false;
    _exit(eventually([&] { return setLoopback(true) && setLoopback(false) && _netlinkEvent; }) ? 0 : 5);
  };
  EXPECT_EXIT(body(), testing::ExitedWithCode(0), "");
}

std::string blockedIn(const std::filesystem::path& task) {
  std::ifstream status(task / "status");
  std::string line;
  while (std::getline(status, line) && !line.starts_with("SigBlk:")) {
  }
  return line;
}

TEST_F(NetlinkThreadTest, SignalsAreBlockedInTheThread) {
  NetlinkThread thread(recorded.logger, handler);
  std::vector<std::string> before;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task"))
    before.push_back(task.path());
  thread.start();
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    if (std::find(before.begin(), before.end(), task.path()) != before.end()) continue;
    // All but the two that nothing can block and the two that the C library keeps for itself, which it lets
    // through when the thread has begun.
    EXPECT_TRUE(eventually([&] { return blockedIn(task.path()) == "SigBlk:\tfffffffe7ffbfeff"; }))
        << blockedIn(task.path());
  }
}

}  // namespace
}  // namespace ZEB::test
