#include <gmock/gmock.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>

#include "common/ZEBUtil.h"
#include "support/Content.h"
#include "support/Environment.h"
#include "support/RecordingLogSink.h"
#include "support/TestFolder.h"

namespace ZEB {
namespace {

using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;
using test::TestFolder;
using ZEB::test::contentOf;

class PostStatusTest : public testing::Test {
 protected:
  static CmpiInstance collection(std::uint16_t status, const std::string& text) {
    CmpiInstance instance(CmpiObjectPath("root/jxv", "ZEB_EthernetCollection", "h", {{"InstanceID", "x"}}));
    CmpiArray codes(1, CMPI_uint16), texts(1, CMPI_string);
    codes.setElementAt(0, status);
    texts.setElementAt(0, text);
    instance.addProperty("InstanceID", "x");
    instance.addProperty("GroupOperationalStatus", codes);
    instance.addProperty("GroupStatusDescriptions", texts);
    return instance;
  }
  void post(const CmpiInstance& instance) { ZEBUtil::postStatus(recorded.logger, CmpiContext(), instance); }
  std::string file() const { return directory.file("run/status.json"); }

  TestFolder directory;
  test::Environment runDirectory{"ZEB_RUN_DIR", directory.file("run")};
  test::RecordedLogger recorded;
};

TEST_F(PostStatusTest, isASmallJsonFile) {
  post(collection(6, "Error"));
  EXPECT_EQ(contentOf(file()), R"({
  "class": "ZEB_EthernetCollection",
  "path": "//h/root/jxv:ZEB_EthernetCollection.InstanceID=\"x\"",
  "properties": {
    "InstanceID": "x",
    "GroupOperationalStatus": [
      6
    ],
    "GroupStatusDescriptions": [
      "Error"
    ]
  }
}
)");
  EXPECT_TRUE(recorded.sink->lines().empty());
}

TEST_F(PostStatusTest, everyKindOfValueHasAForm) {
  CmpiInstance instance(CmpiObjectPath("n", "C"));
  instance.addProperty("A", true);
  instance.addProperty("B", std::int32_t{-1});
  instance.addProperty("C", std::uint64_t{18446744073709551615u});
  instance.addProperty("D", CmpiData::null(CMPI_string));
  instance.addProperty("E", CmpiCpp::CmpiDateTime(0, false));
  instance.addProperty("F", CmpiObjectPath("n", "R"));
  instance.addProperty("G", 0.5);
  instance.addProperty("H", "quote \" and \xFF");
  post(instance);
  const std::string text = contentOf(file());
  for (const char* part : {"\"A\": true", "\"B\": -1", "\"C\": 18446744073709551615", "\"D\": null",
                           "\"E\": \"19700101000000.000000+000\"", "\"F\": \"n:R\"", "\"G\": 0.5",
                           "\"H\": \"quote \\\" and \xEF\xBF\xBD\""}) {
    EXPECT_THAT(text, testing::HasSubstr(part));
  }
}

TEST_F(PostStatusTest, isReadableForEverybodyAndLeavesNothingElse) {
  const mode_t before = umask(0077);  // as services have it
  post(collection(2, "OK"));
  post(collection(3, "Degraded"));
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(file().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0444, 0444u);
  int files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(directory.file("run")))
    ++files;
  EXPECT_EQ(files, 1);
}

TEST_F(PostStatusTest, aReaderFindsTheOldFileOrTheNewOne) {
  post(collection(2, "OK"));
  std::atomic<bool> stop{false};
  int torn = 0;
  std::thread reader([&] {
    while (!stop) {
      const std::string text = contentOf(file());
      const bool whole = text.size() > 3 && text.substr(text.size() - 2) == "}\n";
      if (!whole) ++torn;
    }
  });
  for (int i = 0; i < 300; ++i) post(collection(static_cast<std::uint16_t>(i), std::string(5000, 'x')));
  stop = true;
  reader.join();
  EXPECT_EQ(torn, 0);
}

TEST_F(PostStatusTest, whatCannotBePutInPlaceLeavesNothingBehind) {
  std::filesystem::create_directories(file() + "/in the place of the file");
  post(collection(2, "OK"));
  EXPECT_TRUE(recorded.sink->mentions(LogLevel::Warn, "the status cannot be posted"));
  for (const auto& entry : std::filesystem::directory_iterator(directory.file("run")))
    EXPECT_EQ(entry.path().string(), file());
}

TEST_F(PostStatusTest, aDirectoryThatCannotBeMadeIsAWarning) {
  directory.write("run", "a file");
  post(collection(2, "OK"));
  EXPECT_TRUE(recorded.sink->mentions(LogLevel::Warn, "the status cannot be posted"));
}

}  // namespace
}  // namespace ZEB
