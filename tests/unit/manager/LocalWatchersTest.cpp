// Commands that wait for alerts and do not read them.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>

#include <array>

#include "server/LocalWatchers.h"

namespace ZebManager {
namespace {

/// What a command would get that reads all that was kept for it.
std::vector<Frame> taken(LocalWatcher& watcher, bool& more) {
  std::array<int, 2> ends{};
  EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()), 0);
  const ZEB::FileDescriptor service(ends[0]);
  const ZEB::FileDescriptor command(ends[1]);
  FrameWriter writer;
  more = watcher.takeInto(writer);
  FrameReader reader;
  std::vector<Frame> frames;
  do {
    EXPECT_NE(writer.send(service.get()), Transfer::Ended);
    while (reader.receive(command.get()) == Transfer::Done) continue;
    while (auto frame = reader.next()) frames.push_back(std::move(*frame));
  } while (!writer.empty());
  return frames;
}

TEST(LocalWatchersTest, WhatIsReadIsForgotten) {
  LocalWatcher watcher({"watch", "query", "WQL"});
  const std::string alert(1U << 20, 'a');
  for (int i = 0; i < 20; ++i) {
    watcher.add(alert);
    bool more = false;
    ASSERT_THAT(taken(watcher, more), testing::SizeIs(1));
    EXPECT_TRUE(more);
  }
}

/// 4 MiB are kept: four alerts of nearly one, not a fifth. Then it gets those, and why no others come.
TEST(LocalWatchersTest, WhoFallsBehindIsToldSo) {
  LocalWatcher watcher({"watch", "query", "WQL"});
  const std::string alert((1U << 20) - 64, 'a');
  for (int i = 0; i < 7; ++i) watcher.add(alert);
  bool more = true;
  const std::vector<Frame> frames = taken(watcher, more);
  EXPECT_FALSE(more);
  ASSERT_THAT(frames, testing::SizeIs(5));
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(frames[i].kind, Frame::Kind::Indication);
  EXPECT_EQ(frames[4].kind, Frame::Kind::Refusal);
  EXPECT_EQ(frames[4].body, "alerts were not read for too long, and some are lost");
}

TEST(LocalWatchersTest, OneThatFallsBehindTakesNothingFromAnother) {
  int changes = 0;
  LocalWatchers watchers([&] { ++changes; });
  const auto idle = watchers.add("one");
  const auto other = watchers.add("two");
  EXPECT_EQ(changes, 2);
  std::vector<std::string> names;
  for (const IndicationFilter& filter : watchers.filters()) names.push_back(filter.name);
  names.emplace_back("a subscription");
  const std::string alert(3U << 20, 'a');
  bool more = false;
  for (int i = 0; i < 3; ++i) {
    EXPECT_THAT(watchers.deliver(names, alert), testing::ElementsAre("a subscription"));
    EXPECT_THAT(taken(*other, more), testing::SizeIs(1));
    EXPECT_TRUE(more);
  }
  EXPECT_THAT(taken(*idle, more), testing::SizeIs(2));
  EXPECT_FALSE(more);
}

}  // namespace
}  // namespace ZebManager
