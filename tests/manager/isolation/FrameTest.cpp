// Frames over a socket pair, whole, cut and wrong.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/socket.h>

#include <array>
#include <cstring>
#include <thread>

#include "isolation/Frame.h"
#include "posix/FileDescriptor.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Frames : public testing::Test {
 protected:
  Frames() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
      throw std::runtime_error("socketpair");
    near = ZEB::FileDescriptor(ends[0]);
    far = ZEB::FileDescriptor(ends[1]);
  }

  void put(std::string_view bytes) {
    ASSERT_EQ(send(near.get(), bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
  }
  /// The bytes of a frame, by the layout of the header: kind, length, number.
  static std::string bytesOf(std::uint32_t kind, std::uint32_t length, std::uint64_t number,
                             const std::string& body) {
    std::string bytes(16, '\0');
    std::memcpy(bytes.data(), &kind, 4);
    std::memcpy(bytes.data() + 4, &length, 4);
    std::memcpy(bytes.data() + 8, &number, 8);
    return bytes + body;
  }

  ZEB::FileDescriptor near;
  ZEB::FileDescriptor far;
  FrameReader reader{1000};
};

TEST_F(Frames, ArriveWhateverTheCut) {
  const std::string bytes = bytesOf(2, 3, 7, "abc") + bytesOf(5, 0, 8, "") + bytesOf(7, 2, 0, "xy");
  for (const char byte : bytes) {
    put({&byte, 1});
    ASSERT_EQ(reader.receive(far.get()), Transfer::Done);
  }
  const auto first = reader.next();
  ASSERT_TRUE(first);
  EXPECT_EQ(first->kind, Frame::Kind::Perform);
  EXPECT_EQ(first->number, 7U);
  EXPECT_EQ(first->body, "abc");
  const auto second = reader.next();
  ASSERT_TRUE(second);
  EXPECT_EQ(second->kind, Frame::Kind::Answer);
  EXPECT_EQ(second->number, 8U);
  EXPECT_EQ(second->body, "");
  const auto third = reader.next();
  ASSERT_TRUE(third);
  EXPECT_EQ(third->body, "xy");
  EXPECT_FALSE(reader.next());
}

TEST_F(Frames, ManyArriveAtOnce) {
  put(bytesOf(2, 1, 1, "a") + bytesOf(2, 1, 2, "b") + bytesOf(2, 1, 3, "c").substr(0, 10));
  ASSERT_EQ(reader.receive(far.get()), Transfer::Done);
  EXPECT_EQ(reader.next()->body, "a");
  EXPECT_EQ(reader.next()->body, "b");
  EXPECT_FALSE(reader.next());
}

TEST_F(Frames, OneThatWasCutOffNeverArrives) {
  put(bytesOf(2, 5, 1, "abc"));
  near = ZEB::FileDescriptor();
  EXPECT_EQ(reader.receive(far.get()), Transfer::Done);
  EXPECT_EQ(reader.receive(far.get()), Transfer::Ended);
  EXPECT_FALSE(reader.next());
}

TEST_F(Frames, OneOfTheLongestLengthArrives) {
  const std::string body(1000, 'l');
  put(bytesOf(2, 1000, 1, body));
  ASSERT_EQ(reader.receive(far.get()), Transfer::Done);
  EXPECT_EQ(reader.next()->body, body);
}

TEST_F(Frames, OneThatIsTooLongIsRefusedByItsHeader) {
  put(bytesOf(2, 1001, 1, ""));
  EXPECT_THROW(reader.receive(far.get()), FrameError);
}

TEST_F(Frames, OneOfAnUnknownKindIsRefused) {
  put(bytesOf(0, 0, 1, ""));
  EXPECT_THROW(reader.receive(far.get()), FrameError);
  FrameReader other;
  put(bytesOf(static_cast<std::uint32_t>(Frame::kLast) + 1, 0, 1, ""));
  EXPECT_THROW(other.receive(far.get()), FrameError);
}

TEST_F(Frames, NothingToReadIsNoEnd) {
  fcntl(far.get(), F_SETFL, O_NONBLOCK);
  EXPECT_EQ(reader.receive(far.get()), Transfer::WouldBlock);
}

TEST_F(Frames, AFullSocketTakesTheRestLater) {
  fcntl(near.get(), F_SETFL, O_NONBLOCK);
  FrameWriter writer;
  const std::string big(3'000'000, 'b');
  writer.add({Frame::Kind::Answer, 1, big});
  writer.add({Frame::Kind::Answer, 2, "small"});
  ASSERT_EQ(writer.send(near.get()), Transfer::WouldBlock);
  EXPECT_FALSE(writer.empty());
  FrameReader large;
  std::vector<Frame> got;
  while (got.size() < 2) {
    ASSERT_EQ(large.receive(far.get()), Transfer::Done);
    while (auto frame = large.next()) got.push_back(std::move(*frame));
    ASSERT_NE(writer.send(near.get()), Transfer::Ended);
  }
  EXPECT_TRUE(writer.empty());
  EXPECT_EQ(got[0].body, big);
  EXPECT_EQ(got[1].body, "small");
}

TEST_F(Frames, AnEndThatIsGoneIsNoSignal) {
  far = ZEB::FileDescriptor();
  FrameWriter writer;
  writer.add({Frame::Kind::Ready, 0, "x"});
  EXPECT_EQ(writer.send(near.get()), Transfer::Ended);
  FrameSender sender(near.get());
  EXPECT_FALSE(sender.send({Frame::Kind::Ready, 0, "x"}));
}

void ignore(int) {}

/// A signal comes every few hundred microseconds while both ends are at work.
TEST_F(Frames, SignalsInterruptNothing) {
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = ignore;  // without SA_RESTART
  sigaction(SIGUSR1, &action, &before);
  const std::string body(20'000'000, 's');
  std::thread writer([&] {
    FrameSender sender(near.get());
    EXPECT_TRUE(sender.send({Frame::Kind::Answer, 1, body}));
    EXPECT_TRUE(sender.send({Frame::Kind::Answer, 2, "end"}));
  });
  std::vector<Frame> got;
  std::thread reading([&] {
    FrameReader large;
    while (got.size() < 2 && large.receive(far.get()) == Transfer::Done) {
      std::this_thread::sleep_for(std::chrono::microseconds(50));
      while (auto frame = large.next()) got.push_back(std::move(*frame));
    }
  });
  for (int i = 0; i < 100; ++i) {
    pthread_kill(writer.native_handle(), SIGUSR1);
    pthread_kill(reading.native_handle(), SIGUSR1);
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  writer.join();
  reading.join();
  sigaction(SIGUSR1, &before, nullptr);
  ASSERT_EQ(got.size(), 2U);
  EXPECT_EQ(got[0].body, body);
  EXPECT_EQ(got[1].body, "end");
}

TEST(Texts, ComeBackAsTheyWere) {
  EXPECT_THAT(unpackTexts(packTexts({"", "a", std::string("b\0c", 3)})),
              ElementsAre("", "a", std::string("b\0c", 3)));
  EXPECT_THAT(unpackTexts(packTexts({})), IsEmpty());
}

TEST(Texts, ThatWereCutAreRefused) {
  const std::string packed = packTexts({"abc", "def"});
  for (std::size_t length = 1; length < packed.size(); ++length) {
    if (length == packed.size() / 2) continue;  // the first text alone is a list
    EXPECT_THROW(unpackTexts(packed.substr(0, length)), FrameError) << length;
  }
}

}  // namespace
}  // namespace ZebManager
