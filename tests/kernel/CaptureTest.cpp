#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "KernelSnapshot.h"
#include "Namespace.h"
#include "posix/TemporaryFolder.h"
#include "recorded/RecordedSource.h"
#include "support/Content.h"

namespace ZEB::test {
namespace {

using testing::HasSubstr;

class CaptureTest : public testing::Test {
 protected:
  int run(const std::string& arguments) {
    const int status =
        std::system((ZEB_CAPTURE " " + arguments + " 2>" + (folder / "errors").string()).c_str());
    return WEXITSTATUS(status);
  }
  std::string contents(const std::string& name) { return contentOf(folder / name); }
  const TemporaryFolder folder;
};

TEST_F(CaptureTest, PlaysBackWhatTheKernelSays) {
  IN_NAMESPACE([this] {
    makePairs(1);
    ip("addr add 10.1.2.3/20 dev a0");
    const std::string file = (folder / "host.json").string();
    ASSERT_EQ(run(file), 0);
    EXPECT_EQ(run("--check " + file), 0);
    const auto played = RecordedSource(file).readAll();
    ASSERT_TRUE(played);
    const HostSnapshot live = readAll();
    ASSERT_EQ(played->links.size(), live.links.size());
    EXPECT_EQ(linkNamed(*played, "a0").address, linkNamed(live, "a0").address);
    EXPECT_EQ(linkNamed(*played, "a0").ethtool, linkNamed(live, "a0").ethtool);
    EXPECT_EQ(played->addresses, live.addresses);
  });
}

TEST_F(CaptureTest, AnonymousOneHasNoAddressOfThisHost) {
  IN_NAMESPACE([this] {
    makePairs(1);
    ip("link set a0 address 02:12:34:56:78:9a");
    ip("addr add 10.123.45.67/20 dev a0");
    ASSERT_EQ(run("--anonymize " + (folder / "host.json").string()), 0);
    EXPECT_THAT(contents("host.json"), testing::Not(HasSubstr("02:12:34:56:78:9a")));
    EXPECT_THAT(contents("host.json"), testing::Not(HasSubstr("10.123.45.67")));
    EXPECT_THAT(contents("host.json"), HasSubstr("\"a0\""));
  });
}

TEST_F(CaptureTest, APipeIsWrittenToAndStaysOne) {
  const std::string pipe = (folder / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  ASSERT_EQ(std::system(("timeout 10 cat " + pipe + " >" + (folder / "read.json").string() + " &").c_str()),
            0);
  EXPECT_EQ(run(pipe), 0);
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
  EXPECT_TRUE(eventually([&] { return contents("read.json").ends_with("}\n"); }));
  EXPECT_EQ(run("--check " + (folder / "read.json").string()), 0);
}

TEST_F(CaptureTest, SaysWhatIsWrong) {
  EXPECT_EQ(run(""), 2);
  EXPECT_EQ(run("--frobnicate x"), 2);
  EXPECT_EQ(run("--check --anonymize x"), 2);
  EXPECT_EQ(run("/nowhere/host.json"), 1);
  EXPECT_EQ(contents("errors"), "zeb-capture: cannot write /nowhere/host.json: No such file or directory\n");
  EXPECT_EQ(run("--check /nowhere/host.json"), 1);
  EXPECT_EQ(contents("errors"), "zeb-capture: snapshot /nowhere/host.json: No such file or directory\n");
}

}  // namespace
}  // namespace ZEB::test
