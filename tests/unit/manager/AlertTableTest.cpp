// What is open, what has just ended, and what of it outlives the server.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "ShortFiles.h"
#include "alertmanager/AlertTable.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr DayTime kHour = 3'600'000;

const AlertIdentity kPort{"ZebConnectivityLost", "eth0", ""};
const AlertIdentity kTeam{"ZebConnectivityLost", "", "bond0"};
const AlertIdentity kMember{"ZebMemberFailed", "eth0", "bond0"};

AlertChange opening(const AlertIdentity& identity, DayTime time, const std::string& summary = "lost") {
  return {identity, true, {{"summary", summary}}, time};
}
AlertChange ending(const AlertIdentity& identity, DayTime time) {
  return {identity, false, {}, time};
}

class AlertTables : public testing::Test {
 protected:
  AlertTables() { start(); }

  void start() {
    table.reset();
    table.emplace(folder.path(), [this](const std::string& line) { log.push_back(line); });
  }
  void apply(const AlertChange& change) { table->apply(0, {change}); }
  std::vector<AlertIdentity> open() const {
    std::vector<AlertIdentity> identities;
    for (const OpenAlert& alert : table->open()) identities.push_back(alert.identity);
    return identities;
  }
  std::vector<OpenAlert> all() const { return table->since(0, true).alerts; }

  const ZEB::TemporaryFolder folder;
  std::vector<std::string> log;
  std::optional<AlertTable> table;
};

TEST_F(AlertTables, OpenAnAlertAndEndIt) {
  apply(opening(kPort, 1000));
  ASSERT_THAT(open(), ElementsAre(kPort));
  EXPECT_EQ(table->open()[0].starts, 1000);
  apply(ending(kPort, 3000));
  EXPECT_THAT(open(), IsEmpty());
  ASSERT_EQ(all().size(), 1U);
  EXPECT_EQ(all()[0].ends, 3000);
}

TEST_F(AlertTables, KeepTheStartOfWhatOpensAgainWhileItIsOpen) {
  apply(opening(kPort, 1000, "lost"));
  apply(opening(kPort, 2000, "failed"));
  ASSERT_EQ(table->open().size(), 1U);
  EXPECT_EQ(table->open()[0].starts, 1000);
  EXPECT_EQ(table->open()[0].annotations.at("summary"), "failed");
}

TEST_F(AlertTables, BeginAnewWithWhatOpensAfterItsEnd) {
  table->apply(0, {opening(kPort, 1000), ending(kPort, 2000), opening(kPort, 3000)});
  ASSERT_EQ(all().size(), 1U);
  EXPECT_EQ(all()[0].starts, 3000);
  EXPECT_FALSE(all()[0].ends);
}

TEST_F(AlertTables, DoNotChangeWithTheEndOfWhatIsNotOpen) {
  apply(ending(kPort, 1000));
  EXPECT_EQ(table->revision(), 0U);
  apply(opening(kPort, 2000));
  apply(ending(kPort, 3000));
  const std::uint64_t revision = table->revision();
  apply(ending(kPort, 4000));
  EXPECT_EQ(table->revision(), revision);
  EXPECT_EQ(all()[0].ends, 3000);
}

TEST_F(AlertTables, TellThingsApart) {
  table->apply(0, {opening(kPort, 1), opening(kTeam, 1), opening(kMember, 1), ending(kPort, 2)});
  EXPECT_THAT(open(), ElementsAre(kTeam, kMember));
}

TEST_F(AlertTables, EndWhatMembersOfATeamHaveWithTheTeam) {
  table->apply(0, {opening(kPort, 1), opening(kMember, 1), ending({"ZebMemberFailed", "", "bond0"}, 2)});
  EXPECT_THAT(open(), ElementsAre(kPort));
}

TEST_F(AlertTables, EndNothingBeforeItBegan) {
  apply(opening(kPort, 5000));
  apply(ending(kPort, 1000));  // the clock was set back
  EXPECT_EQ(all()[0].ends, 5000);
}

TEST_F(AlertTables, KeepWhatHasEndedUntilEverybodyKnows) {
  apply(opening(kPort, 1000));
  const std::uint64_t before = table->revision();
  apply(ending(kPort, 2000));
  table->acknowledged(before, 3000);
  EXPECT_EQ(all().size(), 1U);
  table->acknowledged(table->revision(), 3000);
  EXPECT_THAT(all(), IsEmpty());
  start();
  EXPECT_THAT(all(), IsEmpty()) << "nothing comes back";
}

TEST_F(AlertTables, KeepWhatIsOpenThoughEverybodyKnows) {
  apply(opening(kPort, 1000));
  table->acknowledged(table->revision(), 1000 + 100 * kHour);
  EXPECT_THAT(open(), ElementsAre(kPort));
}

TEST_F(AlertTables, ForgetWhatEndedADayAgo) {
  table->apply(0, {opening(kPort, 1000), ending(kPort, 2000)});
  table->acknowledged(0, 2000 + 24 * kHour);
  EXPECT_EQ(all().size(), 1U);
  table->acknowledged(0, 2001 + 24 * kHour);
  EXPECT_THAT(all(), IsEmpty());
}

TEST_F(AlertTables, SayWhatHasChangedInTheOrderOfChanges) {
  apply(opening(kTeam, 1));
  const std::uint64_t known = table->revision();
  apply(opening(kMember, 2));
  apply(opening(kPort, 3));
  std::vector<AlertIdentity> changed;
  for (const OpenAlert& alert : table->since(known, false).alerts) changed.push_back(alert.identity);
  EXPECT_THAT(changed, ElementsAre(kMember, kPort));
  EXPECT_EQ(table->since(known, true).alerts.size(), 3U);
}

TEST_F(AlertTables, OutliveTheServer) {
  table->receive("<a/>", 10);
  table->receive("<b/>", 20);
  table->apply(1, {opening(kPort, 1000), opening(kTeam, 1500), ending(kTeam, 1600)});
  start();
  ASSERT_EQ(table->received().size(), 1U);
  EXPECT_EQ(table->received()[0].element, "<b/>");
  EXPECT_EQ(table->received()[0].time, 20);
  ASSERT_THAT(open(), ElementsAre(kPort));
  EXPECT_EQ(table->open()[0].starts, 1000);
  EXPECT_EQ(table->open()[0].annotations.at("summary"), "lost");
  EXPECT_EQ(table->since(0, false).alerts.size(), 2U) << "nobody is known to know";
  table->receive("<c/>", 30);
  EXPECT_GT(table->received()[1].id, table->received()[0].id);
}

TEST_F(AlertTables, BeginAnewWithADamagedFile) {
  apply(opening(kPort, 1000));
  table.reset();
  std::ofstream(folder / "alertmanager.db") << std::string(10'000, 'x');
  start();
  EXPECT_THAT(log, Contains(HasSubstr("is damaged")));
  EXPECT_THAT(all(), IsEmpty());
  apply(opening(kTeam, 1000));
  start();
  EXPECT_THAT(open(), ElementsAre(kTeam));
}

TEST_F(AlertTables, KeepInMemoryWhatTheDiskDoesNotTake) {
  apply(opening(kPort, 1000));
  {
    const ShortFiles full(4096);
    apply(opening(kTeam, 1000, std::string(50'000, 'x')));
    table->receive(std::string(50'000, 'y'), 5);
    EXPECT_THAT(log, Contains(HasSubstr("kept in memory alone")).Times(1));
    EXPECT_EQ(open().size(), 2U);
  }
  apply(ending(kPort, 2000));  // with the next change everything is kept
  start();
  EXPECT_THAT(open(), ElementsAre(kTeam));
  EXPECT_EQ(table->received().size(), 1U);
}

TEST_F(AlertTables, HaveABound) {
  std::vector<AlertChange> many;
  for (std::size_t i = 0; i <= AlertTable::kMostAlerts; ++i)
    many.push_back(opening({"ZebConnectivityLost", "eth" + std::to_string(i), ""}, 1));
  table->apply(0, many);
  EXPECT_EQ(open().size(), AlertTable::kMostAlerts);
  EXPECT_THAT(log, Contains(HasSubstr("too many alerts are open")).Times(1));
}

TEST_F(AlertTables, SayOnceThatTooMuchWaits) {
  for (std::size_t i = 0; i < AlertTable::kMostReceived + 3; ++i) table->receive("<INSTANCE/>", 1);
  EXPECT_EQ(table->received().size(), AlertTable::kMostReceived);
  EXPECT_THAT(log, Contains(HasSubstr("too many alerts wait")).Times(1));
}

}  // namespace
}  // namespace ZebManager
