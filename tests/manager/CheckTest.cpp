// The line for monitoring systems.
#include <fstream>
#include <regex>

#include "RealCommand.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using ZEB::test::contentOf;

class CheckCommand : public RealCommand {
 protected:
  /// A recorded host with another word in the place of one.
  std::string changed(const std::string& host, const std::string& word, const std::string& other) const {
    const std::string file = (folder / "changed.json").string();
    std::ofstream(file) << std::regex_replace(contentOf(snapshotFile(host)), std::regex(word), other);
    return file;
  }
};

TEST_F(CheckCommand, IsOneLineWithTheStatusOfMonitoringSystems) {
  struct Row {
    const char* host;
    int status;
    const char* line;
  };
  for (const Row& row :
       {Row{"one_port", 0,
            "ETHERNET OK - 1 of 1 ports up | ports=1 up=1 down=0 degraded=0 switched_off=0 teams=0\n"},
        Row{"two_cards", 2,
            "ETHERNET CRITICAL - 4 of 6 ports up: eth1 without link | ports=6 up=4 down=1 degraded=0 "
            "switched_off=1 "
            "teams=0\n"}}) {
    const Outcome outcome = zebcim({"check", "--source", snapshotFile(row.host)});
    EXPECT_EQ(outcome.status, row.status);
    EXPECT_EQ(outcome.out, row.line);
    EXPECT_EQ(outcome.err, "");
  }
}

/// A link that is being tested carries nothing, though it is there.
TEST_F(CheckCommand, WarnsOfWhatIsDegraded) {
  const std::string host = changed("one_port", "\"operState\": \"UP\"", "\"operState\": \"TESTING\"");
  const Outcome outcome = zebcim({"check", "--source", host});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(
      outcome.out,
      "ETHERNET WARNING - 0 of 1 ports up: eth0 degraded | ports=1 up=0 down=0 degraded=1 switched_off=0 "
      "teams=0\n");
}

TEST_F(CheckCommand, IsCriticalWhereNoPortHasALink) {
  const std::string host = changed("one_port", "\"carrier\": true", "\"carrier\": false");
  const Outcome outcome = zebcim({"check", "--source", host});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.out, testing::StartsWith("ETHERNET CRITICAL - 0 of 1 ports up: eth0 without link | "));
}

TEST_F(CheckCommand, KnowsWhatItCannotSay) {
  const Outcome missing = zebcim({"check", "--source", "/nope.json"});
  EXPECT_EQ(missing.status, 3);
  EXPECT_THAT(missing.out, testing::StartsWith("ETHERNET UNKNOWN - cannot read the snapshot '/nope.json'"));
  EXPECT_EQ(zebcim({"check", "eth0"}).status, 3);
}

}  // namespace
}  // namespace ZebManager
