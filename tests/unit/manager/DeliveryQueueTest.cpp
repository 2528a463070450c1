// The queue by itself: what it drops, what its numbers tell, and a clock and a disk that play tricks.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "DeliveryFixture.h"
#include "ShortFiles.h"
#include "indications/DeliveryQueue.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::_;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using ZEB::test::contentOf;

BootClock::time_point theTime{std::chrono::hours(1)};

class Queue : public testing::Test {
 protected:
  Queue() {
    theTime = BootClock::time_point(std::chrono::hours(1));
    settings.directory = directory.path();
    settings.clock = [] { return theTime; };
    open();
  }

  void open() {
    queue.reset();
    queue.emplace(settings, [this](const std::string& line) { lines.push_back(line); });
  }
  void put(const Subscription& to, const std::string& element = "<x/>") { queue->put({&to}, element); }
  /// Numbers of what waits, which is taken.
  std::vector<std::int64_t> numbersFor(const std::string& handler) {
    std::vector<std::int64_t> numbers;
    while (const auto next = queue->oldest(handler)) {
      numbers.push_back(next->number);
      queue->remove(handler, next->id);
    }
    return numbers;
  }
  /// As another program does it that has the file open.
  void elsewhere(const char* statements) const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open((directory / "delivery.db").c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, statements, nullptr, nullptr, nullptr), SQLITE_OK) << statements;
    sqlite3_close(database);
  }
  /// Everything that changes a table fails from now on, as on a full disk.
  void refuseWrites(const char* what) const {
    elsewhere((std::string("CREATE TRIGGER full BEFORE ") + what +
               " ON indication BEGIN SELECT raise(ABORT, 'the disk is full'); END")
                  .c_str());
  }
  void takeWrites() const { elsewhere("DROP TRIGGER full"); }

  ZEB::TemporaryFolder directory;
  DeliverySettings settings;
  std::vector<std::string> lines;
  std::optional<DeliveryQueue> queue;
  const Subscription a = subscription("f", "a", "http://a/"), b = subscription("f", "b", "http://b/");
};

TEST_F(Queue, WhatTheFileDoesNotTakeIsKeptInMemoryAndInOrder) {
  put(a, "<first/>");
  refuseWrites("INSERT");
  put(a, "<second/>");
  queue->put({&a, &b}, "<third/>");
  EXPECT_THAT(lines, ElementsAre(HasSubstr("goes on in memory, it cannot be written: the disk is full")));
  EXPECT_EQ(queue->waiting(), 4U);
  EXPECT_EQ(queue->oldest("a")->element, "<first/>");
  takeWrites();
  theTime += 1s;
  put(a, "<fourth/>");
  EXPECT_THAT(lines, ElementsAre(_, HasSubstr("can be written again")));
  open();
  EXPECT_THAT(numbersFor("a"), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(numbersFor("b"), ElementsAre(0));
}

TEST_F(Queue, WhatIsInMemoryIsSentToo) {
  refuseWrites("INSERT");
  put(a);
  put(a);
  EXPECT_THAT(numbersFor("a"), ElementsAre(0, 1));
  takeWrites();
  open();
  EXPECT_EQ(queue->waiting(), 0U);
}

TEST_F(Queue, WhatMemoryDoesNotTakeLeavesAGap) {
  settings.mostHeldBytes = 200;
  put(a, std::string(100, 'x'));
  refuseWrites("INSERT");
  for (int i = 0; i < 4; ++i) put(a, std::string(100, 'x'));
  takeWrites();
  theTime += 1s;
  put(a);
  EXPECT_THAT(numbersFor("a"), ElementsAre(0, 3, 4, 5));
}

TEST_F(Queue, WhatIsDroppedLeavesAGap) {
  settings.mostWaiting = 2;
  for (int i = 0; i < 5; ++i) put(a);
  EXPECT_THAT(numbersFor("a"), ElementsAre(3, 4));
}

TEST_F(Queue, WhatWasAcknowledgedComesNoMoreThoughItCannotBeRemoved) {
  put(a);
  put(a);
  refuseWrites("DELETE");
  queue->remove("a", queue->oldest("a")->id);
  EXPECT_EQ(queue->oldest("a")->number, 1);
  EXPECT_THAT(lines, ElementsAre(HasSubstr("it cannot be written")));
  takeWrites();
  open();
  EXPECT_THAT(numbersFor("a"), ElementsAre(1)) << "it is made up for";
}

TEST_F(Queue, AListenerThatWentBeginsAnewWhenItComesBack) {
  for (const Subscription& each : {a, a, b}) put(each);
  const auto before = queue->oldest("a");
  ASSERT_TRUE(before);
  queue->keepOnly({b.name}, {"b"});
  EXPECT_EQ(queue->waiting(), 1U);
  put(a);
  const auto after = queue->oldest("a");
  ASSERT_TRUE(after);
  EXPECT_EQ(after->number, before->number);
  EXPECT_NE(after->context, before->context);
}

TEST_F(Queue, AllListenersShareABound) {
  settings.mostBytes = 1000;
  const std::string large(300, 'x');
  put(a, large);
  put(a, large);
  put(a, large);
  put(b, large);
  EXPECT_THAT(numbersFor("b"), ElementsAre(0)) << "the longest line loses";
  EXPECT_THAT(numbersFor("a"), ElementsAre(1, 2));
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines[0], HasSubstr("all are full with 1000 bytes: the oldest is dropped"));
}

TEST_F(Queue, AgesGoByTheTimeSinceTheMachineStarted) {
  settings.longestWait = 3600s;
  put(a);
  theTime += 3600s;
  put(a);
  EXPECT_TRUE(queue->oldest("a"));
  theTime += 1s;
  EXPECT_THAT(numbersFor("a"), ElementsAre(1));
}

/// Whatever the date: the time that the machine was off is not known, the time before and after it is.
TEST_F(Queue, AgesGoOnWhenTheMachineIsStartedAgain) {
  settings.longestWait = 3600s;
  put(a);
  theTime += 600s;
  put(a);
  for (int starts = 0; starts < 2; ++starts) {
    theTime = BootClock::time_point(10s);
    open();
    EXPECT_EQ(queue->oldest("a")->number, 0);
    theTime += 1000s;
    queue->oldest("a");
  }
  theTime += 999s;
  EXPECT_EQ(queue->oldest("a")->number, 0) << "3599 s old";
  put(a);
  theTime += 2s;
  EXPECT_THAT(numbersFor("a"), ElementsAre(1, 2));
}

/// Of a file that was written when ages went by the date.
TEST_F(Queue, DatesFromBeforeCountAsNow) {
  settings.longestWait = 3600s;
  put(a);
  queue.reset();
  elsewhere("UPDATE indication SET queued = 1800000000");
  open();
  theTime += 3600s;
  EXPECT_TRUE(queue->oldest("a"));
  theTime += 1s;
  EXPECT_FALSE(queue->oldest("a"));
}

/// While this lives, the files in the folder cannot be written, nor others made.
class ReadOnly {
 public:
  explicit ReadOnly(const std::filesystem::path& folder) : _folder(folder) {
    std::filesystem::permissions(folder, std::filesystem::perms(0555));
    if (setresuid(kNobody, kNobody, 0) != 0) ADD_FAILURE();
  }
  ReadOnly(const ReadOnly&) = delete;
  ReadOnly& operator=(const ReadOnly&) = delete;
  ~ReadOnly() {
    if (setresuid(0, 0, 0) != 0) ADD_FAILURE();
    std::filesystem::permissions(_folder, std::filesystem::perms(0700));
  }

 private:
  static constexpr uid_t kNobody = 65534;
  const std::filesystem::path _folder;
};

/// As the first version left it, on a disk that takes nothing: what waits in it is sent all the same.
TEST_F(Queue, AFileOfAnEarlierVersionThatCannotBeWrittenIsRead) {
  if (getuid() != 0) GTEST_SKIP() << "what this user may write cannot be told apart";
  put(a, "<first/>");
  put(b);
  queue.reset();
  elsewhere(
      "DROP TABLE clock; CREATE INDEX of_listener ON indication (handler, id);"
      "PRAGMA user_version = 1; PRAGMA application_id = 0; PRAGMA wal_checkpoint(TRUNCATE)");
  {
    const ReadOnly disk(directory.path());
    ASSERT_NO_THROW(open());
    EXPECT_THAT(lines, ElementsAre(HasSubstr("delivery.db cannot be written")));
    ASSERT_TRUE(queue->oldest("a"));
    EXPECT_EQ(queue->oldest("a")->element, "<first/>");
    queue->remove("a", queue->oldest("a")->id);
    put(a, "<second/>");
    EXPECT_EQ(queue->oldest("a")->element, "<second/>");
  }
  theTime += 1s;
  put(a, "<third/>");
  open();
  EXPECT_THAT(numbersFor("a"), ElementsAre(1, 2)) << "it was brought to this version";
  EXPECT_THAT(numbersFor("b"), ElementsAre(0));
}

TEST_F(Queue, WhatWasInADamagedFileLeavesAGapInTheSameSequence) {
  put(a, std::string(5000, 'x'));
  put(a, std::string(5000, 'x'));
  const std::string context = queue->oldest("a")->context;
  elsewhere("PRAGMA wal_checkpoint(TRUNCATE)");
  {
    std::fstream file(directory / "delivery.db", std::ios::in | std::ios::out | std::ios::binary);
    for (int page = 2; page < 12; ++page) {
      file.seekp(page * 4096);
      file << std::string(64, 'x');
    }
  }
  elsewhere("PRAGMA user_version = 2");  // the pages that are remembered are read again
  put(a);
  put(a);
  EXPECT_THAT(lines,
              Contains(AllOf(HasSubstr("delivery.db is damaged"), HasSubstr("delivery.db.damaged-1"))));
  EXPECT_EQ(queue->oldest("a")->context, context);
  open();
  EXPECT_EQ(queue->oldest("a")->context, context);
  EXPECT_EQ(numbersFor("a").back(), 3);
}

TEST_F(Queue, TheFileShrinksWhenItIsEmpty) {
  const std::string large(100'000, 'x');
  for (int i = 0; i < 100; ++i) put(a, large);
  const auto size = [&] {
    const std::filesystem::path file = directory / "delivery.db";
    const std::string log = file.string() + "-wal";
    return std::filesystem::file_size(file) +
           (std::filesystem::exists(log) ? std::filesystem::file_size(log) : 0);
  };
  EXPECT_GT(size(), 10'000'000U);
  numbersFor("a");
  EXPECT_LT(size(), 1'500'000U);
  for (int i = 0; i < 100; ++i) put(a, large);
  queue->keepOnly({}, {});
  EXPECT_LT(size(), 1'500'000U);
}

/// Writing it anew in part needs room of its own. What was taken out before is out.
TEST_F(Queue, AFileThatCannotShrinkIsUsedOn) {
  for (int i = 0; i < 100; ++i) put(a, std::string(100'000, 'x'));
  elsewhere("PRAGMA wal_checkpoint(TRUNCATE)");
  {
    const ShortFiles disk(1'000'000);
    for (int i = 0; i < 14; ++i) queue->remove("a", queue->oldest("a")->id);
    EXPECT_THAT(lines, testing::IsEmpty());
  }
  EXPECT_EQ(numbersFor("a").size(), 86U);
  EXPECT_LT(std::filesystem::file_size(directory / "delivery.db"), 1'500'000U);
}

/// Whatever a disk makes of the file: either it is read, or another takes its place; and then it works.
TEST_F(Queue, SurvivesRandomDamage) {
  const std::string file = directory / "delivery.db";
  for (int i = 0; i < 60; ++i) put(i % 3 == 0 ? b : a, std::string(500, 'x'));
  queue.reset();
  const std::string sound = contentOf(file);
  std::mt19937 random(16);
  for (int round = 0; round < 120; ++round) {
    std::string damaged = sound;
    for (int bytes = 1 + round % 8; bytes > 0; --bytes) {
      const std::size_t reach = round % 2 == 0 ? 200 : damaged.size();
      damaged[random() % reach] = static_cast<char>(random());
    }
    if (round % 10 == 9) damaged.resize(random() % damaged.size());
    for (const char* more : {"-wal", "-shm"}) std::filesystem::remove(file + more);
    std::ofstream(file, std::ios::binary | std::ios::trunc) << damaged;
    ASSERT_NO_THROW(open()) << round;
    ASSERT_NO_THROW({
      for (int i = 0; i < 3; ++i) put(a);
      numbersFor("b");
      queue->keepOnly({"f->a"}, {"a"});
      EXPECT_FALSE(numbersFor("a").empty()) << round;
    }) << round;
    queue.reset();
    for (int number = 1; std::filesystem::remove(file + ".damaged-" + std::to_string(number)); ++number) {
      for (const char* more : {"-wal", "-shm"})
        std::filesystem::remove(file + ".damaged-" + std::to_string(number) + more);
    }
  }
}

}  // namespace
}  // namespace ZebManager
