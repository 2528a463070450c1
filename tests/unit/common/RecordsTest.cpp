#include <gmock/gmock.h>

#include <thread>

#include "common/IndicationDB.h"
#include "support/Environment.h"
#include "support/RecordingLogSink.h"
#include "support/TestFolder.h"

// The records of alerts: the file that is delivered, and files that a site has edited well or badly.

namespace ZEB {
namespace {

using test::Environment;
using testing::HasSubstr;

constexpr const char* kName = "ZEB_EthernetIndication";

/// The lines of a record that is complete.
const std::vector<std::string>& completeRecord() {
  static const std::vector<std::string> kLines = {
      "severity = 5",          "summary = \"s\"",
      "description = \"d\"",   "alert-type = 2",
      "provider-name = \"p\"", "recommended-actions = [\"a\", \"b\"]",
      "category = 1",          "other-category = \"o\"",
      "probable-cause = 30",   "probable-cause-description = \"c\""};
  return kLines;
}

std::string record(const std::vector<std::string>& lines) {
  std::string text = "[ZEB_EthernetIndication.3]\n";
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

class RecordsTest : public testing::Test {
 protected:
  /// What looking up event 3 answers with these contents of the file.
  int lookUp(const std::string& contents, IndDBRec& found) {
    directory.write("records.toml", contents);
    return IndicationDB(recorded.logger, kName).getRecord(3, found);
  }
  int lookUp(const std::string& contents) {
    IndDBRec found;
    return lookUp(contents, found);
  }

  test::TestFolder directory;
  Environment file{"ZEB_RECORDS", directory.file("records.toml")};
  test::RecordedLogger recorded;
};

TEST_F(RecordsTest, everyFieldIsRead) {
  IndDBRec found;
  ASSERT_EQ(lookUp(record(completeRecord()), found), 0);
  EXPECT_EQ(found.severity, 5);
  EXPECT_EQ(found.eventId, "3");
  EXPECT_EQ(found.summary, "s");
  EXPECT_EQ(found.description, "d");
  EXPECT_EQ(found.alertType, 2);
  EXPECT_EQ(found.providerName, "p");
  EXPECT_THAT(found.recommendedActions, testing::ElementsAre("a", "b"));
  EXPECT_EQ(found.category, 1);
  EXPECT_EQ(found.otherCategory, "o");
  EXPECT_EQ(found.probableCause, 30);
  EXPECT_EQ(found.probableCauseDescription, "c");
}

TEST_F(RecordsTest, aRecordWithoutAFieldIsNamedAndLeavesTheOthersUsable) {
  for (std::size_t missing = 0; missing < completeRecord().size(); ++missing) {
    recorded.sink->clear();
    auto lines = completeRecord();
    const std::string field = lines[missing].substr(0, lines[missing].find(' '));
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(missing));
    std::string other = record(completeRecord());
    other.replace(other.find(".3]"), 3, ".4]");
    IndDBRec found;
    found.summary = "untouched";
    EXPECT_NE(lookUp(record(lines) + other, found), 0) << field;
    EXPECT_EQ(found.summary, "untouched");
    EXPECT_TRUE(recorded.sink->mentions(
        LogLevel::Error, "indication record cannot be used: " + directory.file("records.toml") +
                             ":1: " + field + " is missing"))
        << field;
    EXPECT_EQ(IndicationDB(recorded.logger, kName).getRecord(4, found), 0);
  }
}

TEST_F(RecordsTest, aWrongValueIsNamed) {
  for (const char* wrong :
       {"severity = \"high\"", "severity = -1", "severity = 65536", "severity = 1.5", "summary = 5",
        "summary = \"\"", "recommended-actions = \"one\"", "recommended-actions = []",
        "recommended-actions = [1]", "alert-type = true", "probable-cause = []"}) {
    recorded.sink->clear();
    const std::string text = wrong;
    const std::string field = text.substr(0, text.find(' '));
    auto lines = completeRecord();
    for (std::string& line : lines) {
      if (line.substr(0, line.find(' ')) == field) line = wrong;
    }
    EXPECT_NE(lookUp(record(lines)), 0) << wrong;
    EXPECT_TRUE(recorded.sink->mentions(LogLevel::Error, field + " has to be ")) << wrong;
  }
}

TEST_F(RecordsTest, aFieldOfTheWholePartHoldsForItsRecords) {
  IndDBRec found;
  std::string contents = "[ZEB_EthernetIndication]\nprovider-name = \"everybody\"\n";
  auto lines = completeRecord();
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("provider-name"); });
  ASSERT_EQ(lookUp(contents + record(lines), found), 0);
  EXPECT_EQ(found.providerName, "everybody");
  ASSERT_EQ(lookUp(contents + record(completeRecord()), found), 0);
  EXPECT_EQ(found.providerName, "p") << "a record's own field goes first";
}

TEST_F(RecordsTest, anEventThatIsNotThereIsNoLine) {
  IndDBRec found;
  directory.write("records.toml", record(completeRecord()));
  EXPECT_NE(IndicationDB(recorded.logger, kName).getRecord(14, found), 0);
  EXPECT_NE(IndicationDB(recorded.logger, "ZEB_Other").getRecord(3, found), 0);
  EXPECT_TRUE(recorded.sink->lines().empty());
}

TEST_F(RecordsTest, aFileThatIsNoTomlIsNamedWithItsLine) {
  EXPECT_NE(lookUp("[ZEB_EthernetIndication.3]\nseverity = = 5\n"), 0);
  EXPECT_TRUE(recorded.sink->mentions(
      LogLevel::Error, "indication records cannot be read: " + directory.file("records.toml") + ":2: "));
}

TEST_F(RecordsTest, aFileThatIsNotThereIsNamed) {
  IndDBRec found;
  EXPECT_NE(IndicationDB(recorded.logger, kName).getRecord(3, found), 0);
  EXPECT_TRUE(recorded.sink->mentions(LogLevel::Error, directory.file("records.toml")));
}

TEST_F(RecordsTest, aDirectoryInPlaceOfTheFileIsNamed) {
  std::filesystem::create_directory(directory.file("records.toml"));
  IndDBRec found;
  EXPECT_NE(IndicationDB(recorded.logger, kName).getRecord(3, found), 0);
  EXPECT_TRUE(recorded.sink->mentions(LogLevel::Error, directory.file("records.toml")));
}

TEST_F(RecordsTest, aChangeHoldsFromTheNextOpeningOn) {
  IndDBRec found;
  ASSERT_EQ(lookUp(record(completeRecord()), found), 0);
  const IndicationDB open(recorded.logger, kName);
  auto lines = completeRecord();
  lines[1] = "summary = \"t\"";  // as long as before
  ASSERT_EQ(lookUp(record(lines), found), 0);
  EXPECT_EQ(found.summary, "t");
  ASSERT_EQ(open.getRecord(3, found), 0);
  EXPECT_EQ(found.summary, "s") << "one that is open keeps what it has";
}

TEST_F(RecordsTest, aFileThatComesBackIsReadAgain) {
  EXPECT_NE(lookUp("broken = = "), 0);
  EXPECT_EQ(lookUp(record(completeRecord())), 0);
}

TEST_F(RecordsTest, anUnchangedFileIsNotReadAgain) {
  ASSERT_EQ(lookUp(record(completeRecord())), 0);
  const auto began = std::chrono::steady_clock::now();
  for (int i = 0; i < 20000; ++i) IndicationDB(recorded.logger, kName);
  // Twenty thousand readings would take a minute.
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(10));
}

TEST_F(RecordsTest, isOpenedFromSeveralThreads) {
  std::vector<std::thread> threads;
  directory.write("records.toml", record(completeRecord()));
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([this] {
      for (int i = 0; i < 100; ++i) {
        IndDBRec found;
        EXPECT_EQ(IndicationDB(recorded.logger, kName).getRecord(3, found), 0);
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

// --- the file that is delivered ---

class DeliveredRecordsTest : public testing::TestWithParam<int> {
 protected:
  Environment file{"ZEB_RECORDS", ZEB_RECORDS_FILE};
  test::RecordedLogger recorded;
};

TEST_P(DeliveredRecordsTest, isCompleteAndWorthReading) {
  const int event = GetParam();
  IndDBRec found;
  ASSERT_EQ(IndicationDB(recorded.logger, kName).getRecord(event, found), 0);
  EXPECT_EQ(found.eventId, std::to_string(event));
  EXPECT_EQ(found.providerName, "ZEBEthernetPort");
  EXPECT_TRUE(found.severity >= 2 && found.severity <= 7) << found.severity;
  EXPECT_TRUE(found.alertType >= 2 && found.alertType <= 8) << "1 would want a text that alerts do not carry";
  EXPECT_TRUE(found.probableCause >= 1 && found.probableCause <= 130);
  EXPECT_EQ(found.category, event == 201 ? 1 : event == 100 ? 3 : 2);
  EXPECT_EQ(found.otherCategory.empty(), event != 201);
  EXPECT_GT(found.summary.size(), 5u);
  EXPECT_GT(found.description.size(), 20u);
  EXPECT_GT(found.probableCauseDescription.size(), 20u);
  for (const std::string& action : found.recommendedActions) EXPECT_GT(action.size(), 15u);
  // What is said in parentheses behind the description stands apart from it; these two have nothing there.
  EXPECT_EQ(found.description.back() == ' ', event != 100 && event != 201);
  EXPECT_TRUE(recorded.sink->lines().empty());
}

INSTANTIATE_TEST_SUITE_P(Events, DeliveredRecordsTest,
                         testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16, 20, 21, 100,
                                         201));

TEST_F(DeliveredRecordsTest, hasNoOthers) {
  const IndicationDB records(recorded.logger, kName);
  IndDBRec found;
  for (const int event : {0, 14, 17, 18, 19, 22, 99, 101, 200, 202})
    EXPECT_NE(records.getRecord(event, found), 0);
}

TEST(InstalledRecordsTest, areFoundFromTheProgramsOwnPlaceInTheBuildTree) {
  const Environment none("ZEB_RECORDS", "");
  const test::RecordedLogger recorded;
  IndDBRec found;
  EXPECT_EQ(IndicationDB(recorded.logger, kName).getRecord(3, found), 0);
  EXPECT_TRUE(recorded.sink->lines().empty());
}

}  // namespace
}  // namespace ZEB
