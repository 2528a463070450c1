#include <gmock/gmock.h>
#include <sys/syscall.h>

#include <set>

#include "KernelSnapshot.h"
#include "SystemCalls.h"
#include "model/Model.h"

namespace ZEB::test {
namespace {

using namespace ethernet;

/// Room for larger answers is asked of the system now and then; that is their size and not their number.
const std::set<long> kMemory = {SYS_brk, SYS_mmap, SYS_munmap, SYS_mremap, SYS_madvise, SYS_mprotect};

std::map<long, int> withoutSize(const SystemCalls& calls) {
  std::map<long, int> rest = calls.count;
  std::erase_if(
      rest, [](const auto& entry) { return entry.first == SYS_recvfrom || kMemory.contains(entry.first); });
  return rest;
}

TEST(KernelScale, SystemCallsOfARefreshDoNotGrowWithThePorts) {
  IN_NAMESPACE([] {
    KernelSource source;
    std::optional<HostSnapshot> snapshot;
    const auto refresh = [&] {
      auto answer = source.readAll();
      if (answer) snapshot = std::move(*answer);
    };
    makePairs(20);
    // Otherwise a refresh rightly asks for some interfaces twice.
    ASSERT_TRUE(comesToRest(source));
    const auto few = traced(refresh, refresh);
    if (!few) GTEST_SKIP() << "not allowed to trace";
    for (int i = 20; i < 2000; i += 330) {
      std::string commands;
      for (int j = i; j < i + 330; ++j) {
        const std::string n = std::to_string(j);
        commands += "link add a" + n + " type veth peer name b" + n + "\nlink set a" + n + " up\nlink set b" +
                    n + " up\n";
      }
      ipBatch(commands);
    }
    ASSERT_TRUE(comesToRest(source));
    const auto many = traced(refresh, refresh);
    ASSERT_TRUE(many);
    refresh();
    EXPECT_EQ(buildModel(*snapshot, true)->ports.size(), 4000u);

    EXPECT_EQ(withoutSize(*many), withoutSize(*few));
    for (const long never : {SYS_openat, SYS_open, SYS_readlink, SYS_newfstatat, SYS_ioctl, SYS_execve,
                             SYS_clone, SYS_clone3, SYS_fork, SYS_vfork}) {
      EXPECT_EQ(many->of(never), 0) << "system call " << never;
    }
    const auto expectedReads = static_cast<int>(many->bytesReceived / (16 * 1024)) + few->of(SYS_recvfrom);
    EXPECT_LE(many->of(SYS_recvfrom), expectedReads) << "answers come in datagrams of up to 32 KiB";
    RecordProperty("recvfrom-40", few->of(SYS_recvfrom));
    RecordProperty("recvfrom-4000", many->of(SYS_recvfrom));
    RecordProperty("sendto-4000", many->of(SYS_sendto));
  });
}

TEST(KernelScale, UpdateWithoutAnnouncementAsksNothing) {
  IN_NAMESPACE([] {
    makePairs(10);
    KernelSource source;
    ASSERT_TRUE(comesToRest(source));
    const auto calls = traced([&] { (void)source.announced(); }, [&] { (void)source.announced(); });
    if (!calls) GTEST_SKIP() << "not allowed to trace";
    EXPECT_EQ(calls->of(SYS_sendto), 0);
    EXPECT_LE(calls->of(SYS_recvfrom), 2) << "one look at each socket that listens";
  });
}

TEST(KernelScale, OneInterfaceCostsTheSameAmongMany) {
  IN_NAMESPACE([] {
    makePairs(200);
    KernelSource source;
    ASSERT_TRUE(comesToRest(source));
    const auto calls = traced([&] { (void)source.readOne(5); }, [&] { (void)source.readOne(5); });
    if (!calls) GTEST_SKIP() << "not allowed to trace";
    EXPECT_LE(calls->of(SYS_sendto), 4) << "link, addresses, link modes";
    EXPECT_LE(calls->bytesReceived, 16u * 1024);
  });
}

}  // namespace
}  // namespace ZEB::test
