// What clients share, and which connections give way.
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>

#include "posix/FileDescriptor.h"
#include "server/Connections.h"
#include "server/SharedBound.h"

namespace ZebManager {
namespace {

using std::chrono::seconds;

const Party kNobody{Party::Kind::Nobody, "this machine"};

Party user(const std::string& name) {
  return {Party::Kind::User, name};
}
Party stranger(const std::string& client) {
  return {Party::Kind::Stranger, client};
}

TEST(SharedBound, EachKindHasItsPartAndUsersHaveTheRest) {
  SharedBound bound(160);
  EXPECT_FALSE(bound.take(kNobody, 81));
  EXPECT_TRUE(bound.take(kNobody, 80));
  EXPECT_FALSE(bound.take(kNobody, 1));
  EXPECT_FALSE(bound.take(stranger("a"), 21));
  EXPECT_TRUE(bound.take(stranger("a"), 20));
  EXPECT_TRUE(bound.take(stranger("b"), 20));
  EXPECT_FALSE(bound.take(stranger("c"), 1)) << "a quarter for all strangers";
  EXPECT_TRUE(bound.take(user("a"), 40));
  EXPECT_FALSE(bound.take(user("b"), 1)) << "all is taken";
  bound.giveBack(kNobody, 80);
  EXPECT_FALSE(bound.take(user("a"), 1));
  EXPECT_TRUE(bound.take(user("b"), 40));
}

TEST(SharedBound, ThereIsAlwaysAPlaceForOneOfEach) {
  SharedBound bound(2);
  EXPECT_TRUE(bound.take(user("a"), 1));
  EXPECT_TRUE(bound.take(stranger("a"), 1));
  EXPECT_FALSE(bound.take(kNobody, 1));
}

TEST(SharedBound, AShareIsGivenBackWhole) {
  SharedBound bound(100);
  {
    Share share(bound, user("a"));
    EXPECT_TRUE(share.grow(20));
    EXPECT_TRUE(share.grow(5));
    EXPECT_FALSE(share.grow(1));
  }
  EXPECT_TRUE(bound.take(user("a"), 25));
}

/// A connection whose one end is watched.
class Line {
 public:
  Line() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0) {
      _own = ZEB::FileDescriptor(ends[0]);
      _other = ZEB::FileDescriptor(ends[1]);
    }
  }
  int socket() const { return _own.get(); }
  bool isOpen(int patienceMs = 0) const {
    pollfd ready{_other.get(), POLLIN, 0};
    return poll(&ready, 1, patienceMs) == 0;
  }

 private:
  ZEB::FileDescriptor _own, _other;
};

TEST(Connections, TheOneThatHasWaitedLongestGivesWayToTheNextOfItsClient) {
  Connections connections(10, 2);
  const std::array<Line, 4> lines;
  connections.add(lines[0].socket(), "a", seconds(60));
  connections.add(lines[1].socket(), "a", seconds(60));
  connections.add(lines[2].socket(), "b", seconds(60));
  EXPECT_TRUE(lines[0].isOpen());
  connections.wait(lines[0].socket(), seconds(60));  // it waited before
  connections.work(lines[0].socket());
  connections.wait(lines[0].socket(), seconds(60));
  connections.add(lines[3].socket(), "a", seconds(60));
  EXPECT_TRUE(lines[0].isOpen());
  EXPECT_FALSE(lines[1].isOpen());
  EXPECT_TRUE(lines[2].isOpen());
  EXPECT_TRUE(lines[3].isOpen());
}

TEST(Connections, WhereAllAreTooManyOneOfTheClientWithMostGivesWay) {
  Connections connections(3, 3);
  const std::array<Line, 4> lines;
  connections.add(lines[0].socket(), "b", seconds(60));
  connections.add(lines[1].socket(), "a", seconds(60));
  connections.add(lines[2].socket(), "a", seconds(60));
  connections.add(lines[3].socket(), "c", seconds(60));
  EXPECT_TRUE(lines[0].isOpen());
  EXPECT_FALSE(lines[1].isOpen());
  EXPECT_TRUE(lines[2].isOpen());
  EXPECT_TRUE(lines[3].isOpen());
}

TEST(Connections, WhoseRequestIsUnderWayGivesWayToNobody) {
  Connections connections(2, 2);
  const std::array<Line, 3> lines;
  for (std::size_t i = 0; i < 2; ++i) {
    connections.add(lines[i].socket(), "a", seconds(60));
    connections.work(lines[i].socket());
  }
  connections.add(lines[2].socket(), "b", seconds(60));
  EXPECT_TRUE(lines[0].isOpen());
  EXPECT_TRUE(lines[1].isOpen());
  EXPECT_FALSE(lines[2].isOpen());
}

TEST(Connections, WhoseRequestIsUnderWayIsNotTheOneOfItsClientThatHasWaitedLongest) {
  Connections connections(10, 1);
  const std::array<Line, 3> lines;
  connections.add(lines[0].socket(), "a", seconds(60));
  connections.work(lines[0].socket());
  connections.add(lines[1].socket(), "a", seconds(60));
  connections.add(lines[2].socket(), "a", seconds(60));
  EXPECT_TRUE(lines[0].isOpen());
  EXPECT_FALSE(lines[1].isOpen());
  EXPECT_TRUE(lines[2].isOpen());
}

TEST(Connections, TimeEndsThoseThatHaveAny) {
  Connections connections(4, 4);
  const std::array<Line, 3> lines;
  for (const Line& line : lines) connections.add(line.socket(), "a", seconds(1));
  connections.allow(lines[1].socket(), seconds(0));
  connections.wait(lines[2].socket(), seconds(60));
  EXPECT_FALSE(lines[0].isOpen(10'000));
  EXPECT_TRUE(lines[1].isOpen());
  EXPECT_TRUE(lines[2].isOpen());
}

}  // namespace
}  // namespace ZebManager
