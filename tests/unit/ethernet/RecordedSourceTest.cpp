#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "posix/TemporaryFolder.h"
#include "recorded/RecordedSource.h"

namespace ZEB::ethernet::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class RecordedSourceTest : public testing::Test {
 protected:
  /// Replaces the file as a careful writer does.
  void write(const std::string& text) {
    std::ofstream(folder / "next") << text;
    fs::rename(folder / "next", file);
  }
  void writeLink(const std::string& name, int time = 5) {
    write(R"({"format": "zeb-host-snapshot", "version": 1, "time": )" + std::to_string(time) +
          R"(, "links": [{"index": 2, "name": ")" + name + R"("}]})");
  }
  std::string nameNow() {
    const auto snapshot = source.readAll();
    return snapshot ? snapshot->links.at(0).name : snapshot.failure().what;
  }

  const TemporaryFolder folder;
  const fs::path file = folder / "host.json";
  RecordedSource source{""};
};

TEST_F(RecordedSourceTest, PlaysAFileAndReadsItAgainWhenItChanges) {
  source = RecordedSource(file.string());
  EXPECT_TRUE(source.announced()) << "nothing was read yet";
  writeLink("eth0");
  EXPECT_EQ(nameNow(), "eth0");
  EXPECT_FALSE(source.announced());
  writeLink("eth1");
  EXPECT_TRUE(source.announced());
  EXPECT_EQ(nameNow(), "eth1");
  EXPECT_FALSE(source.announced());
}

TEST_F(RecordedSourceTest, MissingAndBadFilesAreOneLineThatNamesThem) {
  source = RecordedSource(file.string());
  EXPECT_EQ(nameNow(), "snapshot " + file.string() + ": No such file or directory");
  write("{");
  EXPECT_EQ(nameNow(), "snapshot " + file.string() + ": expected one JSON object");
  writeLink("eth0");
  EXPECT_EQ(nameNow(), "eth0");
  write("");
  EXPECT_THAT(nameNow(), EndsWith(": expected one JSON object"));
  EXPECT_TRUE(source.announced());
  EXPECT_FALSE(source.readOne(2));
  fs::remove(file);
  EXPECT_FALSE(source.readAll());
}

TEST_F(RecordedSourceTest, FolderIsNoSnapshot) {
  EXPECT_FALSE(RecordedSource(folder.path().string()).readAll());
}

TEST_F(RecordedSourceTest, DevicesAndPipesAreNoSnapshots) {
  const std::string pipe = (folder / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& other : {std::string("/dev/zero"), std::string("/dev/null"), pipe}) {
    EXPECT_THAT(RecordedSource(other).readAll().failure().what,
                HasSubstr("snapshot " + other + ": No such device"));
  }
}

TEST_F(RecordedSourceTest, HugeFileIsRefusedUnread) {
  writeLink("eth0");
  fs::resize_file(file, std::uintmax_t{4} << 30);
  EXPECT_THAT(RecordedSource(file.string()).readAll().failure().what, HasSubstr("larger than any snapshot"));
}

TEST_F(RecordedSourceTest, TimeOfPlaybackWhereTheFileHasNone) {
  writeLink("eth0", 0);
  const auto before = std::time(nullptr);
  const auto snapshot = RecordedSource(file.string()).readAll();
  EXPECT_GE(snapshot->sampleTime, before);
  writeLink("eth0", 77);
  EXPECT_EQ(RecordedSource(file.string()).readAll()->sampleTime, 77);
}

TEST_F(RecordedSourceTest, OneInterfaceComesWithItsMembersItsMasterAndTheirNetworks) {
  source = RecordedSource(file.string());
  write(R"({"format": "zeb-host-snapshot", "version": 1, "time": 5, "links": [
      {"index": 2, "name": "eth0", "masterIndex": 10}, {"index": 3, "name": "eth1", "masterIndex": 10},
      {"index": 4, "name": "eth2"}, {"index": 10, "name": "bond0", "masterIndex": 20},
      {"index": 20, "name": "br0"}],
    "addresses": [
      {"index": 4, "address": "10.0.0.4", "prefixLength": 8}, {"index": 10, "address": "10.0.0.1", "prefixLength": 8},
      {"index": 20, "address": "10.0.0.3", "prefixLength": 8}, {"index": 10, "address": "10.0.0.2", "prefixLength": 8}],
    "routes": [{"index": 20, "gateway": "10.0.0.254"}, {"index": 4, "gateway": "10.0.0.253"}],
    "rules": [{"family": "ipv4", "table": 254}]})");
  const auto bond = source.readOne(10);
  ASSERT_TRUE(bond);
  EXPECT_EQ(bond->sampleTime, 5);
  const auto names = [](const HostSnapshot& snapshot) {
    std::vector<std::string> all;
    for (const LinkFacts& link : snapshot.links) all.push_back(link.name);
    return all;
  };
  EXPECT_THAT(names(*bond), ElementsAre("bond0", "eth0", "eth1", "br0"));
  std::vector<std::string> addresses;
  for (const AddressFacts& own : bond->addresses) addresses.push_back(toText(own.address));
  EXPECT_THAT(addresses, ElementsAre("10.0.0.1", "10.0.0.2", "10.0.0.3"));
  ASSERT_EQ(bond->routes.size(), 1U);
  EXPECT_EQ(toText(bond->routes.front().gateway), "10.0.0.254");
  EXPECT_EQ(bond->rules.size(), 1U);
  EXPECT_THAT(names(*source.readOne(4)), ElementsAre("eth2"));
  EXPECT_THAT(names(*source.readOne(99)), ElementsAre());
  writeLink("eth9");
  EXPECT_THAT(names(*source.readOne(2)), ElementsAre("eth9"));
}

TEST_F(RecordedSourceTest, TimelineStepsAtItsTimes) {
  using std::chrono::milliseconds;
  const auto begin = RecordedSource::Clock::now();
  auto clock = begin;
  RecordedSource timed(file.string(), [&] { return clock; });
  write(R"({"format": "zeb-host-timeline", "version": 1, "steps": [
    {"at": 0, "snapshot": {"links": [{"index": 2, "name": "a"}]}},
    {"at": 1.5, "change": {"links": [{"index": 2, "name": "b"}]}},
    {"at": 1.5, "change": {"links": [{"index": 2, "name": "c"}]}},
    {"at": 4, "change": {"links": [{"index": 2, "name": "d"}]}}]})");
  const auto name = [&] { return timed.readAll()->links.at(0).name; };
  EXPECT_EQ(name(), "a");
  clock = begin + milliseconds(1499);
  EXPECT_FALSE(timed.announced());
  EXPECT_EQ(name(), "a");
  clock = begin + milliseconds(1500);
  EXPECT_TRUE(timed.announced());
  EXPECT_EQ(timed.readOne(2)->links.at(0).name, "c") << "one interface is asked for as of now";
  EXPECT_TRUE(timed.announced()) << "which is no answer about everything";
  EXPECT_EQ(name(), "c");
  EXPECT_FALSE(timed.announced());
  clock = begin + milliseconds(9000);
  EXPECT_EQ(name(), "d");
  clock = begin + milliseconds(99000);
  EXPECT_FALSE(timed.announced());
}

}  // namespace
}  // namespace ZEB::ethernet::test
