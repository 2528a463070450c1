#include <gtest/gtest.h>
#include <linux/netlink.h>

#include <cerrno>
#include <deque>

#include "MessageBuilder.h"
#include "netlink/QuerySocket.h"

namespace ZEB::ethernet::test {
namespace {

constexpr std::uint16_t kType = 0x20;

MessageBuilder item(std::uint32_t sequence, std::uint32_t value, std::uint16_t flags = NLM_F_MULTI) {
  MessageBuilder builder;
  return builder.raw(value).message(kType, sequence, flags);
}

MessageBuilder closing(std::uint16_t type, std::uint32_t sequence, int code, std::uint16_t flags = 0) {
  MessageBuilder builder;
  return builder.raw(code).message(type, sequence, flags);
}

TEST(ReplyReader, EndsWithDone) {
  std::vector<std::uint32_t> seen;
  ReplyReader reader(5,
                     [&](std::uint16_t, Bytes payload) { seen.push_back(*leading<std::uint32_t>(payload)); });
  auto datagram = item(5, 1);
  datagram += item(5, 2);
  EXPECT_EQ(reader.feed(datagram.view()), ReplyReader::State::More);
  EXPECT_EQ(reader.feed(closing(NLMSG_DONE, 5, 0).view()), ReplyReader::State::Done);
  EXPECT_EQ(seen, (std::vector<std::uint32_t>{1, 2}));
}

TEST(ReplyReader, PassesOverOtherSequences) {
  int seen = 0;
  ReplyReader reader(5, [&](std::uint16_t, Bytes) { ++seen; });
  EXPECT_EQ(reader.feed(item(4, 1).view()), ReplyReader::State::More);
  EXPECT_EQ(reader.feed(closing(NLMSG_DONE, 4, 0).view()), ReplyReader::State::More);
  EXPECT_EQ(reader.feed(closing(NLMSG_ERROR, 6, -EPERM).view()), ReplyReader::State::More);
  EXPECT_EQ(seen, 0);
}

TEST(ReplyReader, AcknowledgementIsAnEnd) {
  ReplyReader reader(5, [](std::uint16_t, Bytes) {});
  EXPECT_EQ(reader.feed(closing(NLMSG_ERROR, 5, 0).view()), ReplyReader::State::Done);
}

TEST(ReplyReader, ErrorAndFailingDone) {
  for (const std::uint16_t type : {std::uint16_t{NLMSG_ERROR}, std::uint16_t{NLMSG_DONE}}) {
    ReplyReader reader(5, [](std::uint16_t, Bytes) {});
    EXPECT_EQ(reader.feed(closing(type, 5, -EOPNOTSUPP).view()), ReplyReader::State::Failed);
    EXPECT_EQ(reader.error(), EOPNOTSUPP);
  }
}

TEST(ReplyReader, ErrorThatIsNone) {
  ReplyReader reader(5, [](std::uint16_t, Bytes) {});
  EXPECT_EQ(reader.feed(closing(NLMSG_ERROR, 5, std::numeric_limits<int>::min()).view()),
            ReplyReader::State::Failed);
  EXPECT_EQ(reader.error(), EBADMSG);
}

TEST(ReplyReader, InterruptedAnywhereIsInterrupted) {
  ReplyReader reader(5, [](std::uint16_t, Bytes) {});
  EXPECT_EQ(reader.feed(item(5, 1, NLM_F_MULTI | NLM_F_DUMP_INTR).view()), ReplyReader::State::More);
  EXPECT_EQ(reader.feed(item(5, 2).view()), ReplyReader::State::More);
  EXPECT_EQ(reader.feed(closing(NLMSG_DONE, 5, 0).view()), ReplyReader::State::Interrupted);
  ReplyReader atTheEnd(5, [](std::uint16_t, Bytes) {});
  EXPECT_EQ(atTheEnd.feed(closing(NLMSG_DONE, 5, 0, NLM_F_DUMP_INTR).view()),
            ReplyReader::State::Interrupted);
}

TEST(ReplyReader, BrokenLengthsFail) {
  for (const std::uint32_t length : {0u, 15u, 4096u, 0xFFFFFFFFu}) {
    auto datagram = item(5, 1);
    std::memcpy(datagram.data().data(), &length, sizeof length);
    ReplyReader reader(5, [](std::uint16_t, Bytes) {});
    EXPECT_EQ(reader.feed(datagram.view()), ReplyReader::State::Failed) << length;
    EXPECT_EQ(reader.error(), EBADMSG);
  }
}

/// Answers each request with the next of the prepared answers, whatever was asked.
class FakeWire : public Wire {
 public:
  using Datagrams = std::vector<std::function<std::ptrdiff_t(std::uint32_t, std::span<std::byte>)>>;
  std::deque<Datagrams> answers;
  int sent = 0;
  int sendError = 0;

  int send(Bytes datagram) override {
    ++sent;
    _sequence = leading<nlmsghdr>(datagram)->nlmsg_seq;
    _current = answers.empty() ? Datagrams{} : answers.front();
    if (!answers.empty()) answers.pop_front();
    _next = 0;
    return sendError;
  }
  std::ptrdiff_t receive(std::span<std::byte> buffer) override {
    if (_next == _current.size()) return -EAGAIN;
    return _current[_next++](_sequence, buffer);
  }

 private:
  std::uint32_t _sequence = 0;
  Datagrams _current;
  std::size_t _next = 0;
};

std::ptrdiff_t fill(std::span<std::byte> buffer, const MessageBuilder& message) {
  std::ranges::copy(message.view(), buffer.begin());
  return static_cast<std::ptrdiff_t>(message.view().size());
}

auto items(std::uint32_t first, std::uint32_t second, std::uint16_t flags = NLM_F_MULTI) {
  return [=](std::uint32_t sequence, std::span<std::byte> buffer) {
    auto datagram = item(sequence, first, flags);
    datagram += item(sequence, second, flags);
    return fill(buffer, datagram);
  };
}
auto end(std::uint16_t type, int code) {
  return [=](std::uint32_t sequence, std::span<std::byte> buffer) {
    return fill(buffer, closing(type, sequence, code));
  };
}
auto failing(int error) {
  return [=](std::uint32_t, std::span<std::byte>) -> std::ptrdiff_t { return -error; };
}

class QuerySocketTest : public testing::Test {
 protected:
  std::optional<Failure> ask() {
    Request request(kType, NLM_F_DUMP);
    return _socket.ask(
        request, "things",
        [&](std::uint16_t, Bytes payload) { seen.push_back(*leading<std::uint32_t>(payload)); },
        [&] { seen.clear(); });
  }

  FakeWire* wire = new FakeWire;
  std::vector<std::uint32_t> seen;

 private:
  QuerySocket _socket{std::unique_ptr<Wire>(wire)};
};

TEST_F(QuerySocketTest, CollectsAnAnswer) {
  wire->answers = {{items(1, 2), items(3, 4), end(NLMSG_DONE, 0)}};
  EXPECT_FALSE(ask());
  EXPECT_EQ(seen, (std::vector<std::uint32_t>{1, 2, 3, 4}));
  EXPECT_EQ(wire->sent, 1);
}

TEST_F(QuerySocketTest, AsksAgainWhenInterrupted) {
  wire->answers = {{items(1, 2, NLM_F_MULTI | NLM_F_DUMP_INTR), end(NLMSG_DONE, 0)},
                   {items(5, 6), end(NLMSG_DONE, 0)}};
  EXPECT_FALSE(ask());
  EXPECT_EQ(seen, (std::vector<std::uint32_t>{5, 6}));
  EXPECT_EQ(wire->sent, 2);
}

TEST_F(QuerySocketTest, AsksAgainWhenDatagramsWereLost) {
  wire->answers = {{items(1, 2), failing(ENOBUFS)}, {items(5, 6), end(NLMSG_DONE, 0)}};
  EXPECT_FALSE(ask());
  EXPECT_EQ(seen, (std::vector<std::uint32_t>{5, 6}));
}

TEST_F(QuerySocketTest, AsksAgainWhenTheKernelIsBusy) {
  wire->answers = {{end(NLMSG_ERROR, -EBUSY)}, {items(5, 6), end(NLMSG_DONE, 0)}};
  EXPECT_FALSE(ask());
  EXPECT_EQ(seen, (std::vector<std::uint32_t>{5, 6}));
  EXPECT_EQ(wire->sent, 2);
}

TEST_F(QuerySocketTest, GivesUpOnWhatNeverComesToRest) {
  for (int i = 0; i < 100; ++i) wire->answers.push_back({items(1, 2, NLM_F_DUMP_INTR), end(NLMSG_DONE, 0)});
  const auto failure = ask();
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->what, "things: changes while it is listed");
  EXPECT_EQ(wire->sent, 8);
}

TEST_F(QuerySocketTest, RefusalIsAFailureAtOnce) {
  wire->answers = {{end(NLMSG_ERROR, -EPERM)}};
  const auto failure = ask();
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->code, EPERM);
  EXPECT_EQ(wire->sent, 1);
}

TEST_F(QuerySocketTest, SilenceAndTruncationAreFailures) {
  wire->answers = {{items(1, 2)}};
  EXPECT_EQ(ask()->code, EAGAIN);
  wire->answers = {{failing(EMSGSIZE)}};
  EXPECT_EQ(ask()->code, EMSGSIZE);
  wire->sendError = ECONNREFUSED;
  EXPECT_EQ(ask()->code, ECONNREFUSED);
}

}  // namespace
}  // namespace ZEB::ethernet::test
