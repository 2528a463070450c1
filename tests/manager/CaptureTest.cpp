// A snapshot of this machine, taken and played back.
#include <fstream>
#include <nlohmann/json.hpp>

#include "RealCommand.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using ZEB::test::contentOf;

/// Addresses of the loopback interface and the unspecified one say nothing of a host.
bool tellsTheHost(const std::string& address) {
  return !address.starts_with("127.") && address != "::1" && address != "00:00:00:00:00:00";
}

class CaptureCommand : public RealCommand {
 protected:
  Json captured(const std::vector<std::string>& options) const {
    std::vector<std::string> words = {"capture", file};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome outcome = zebcim(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return Json::parse(std::ifstream(file));
  }
  std::string file;
  void SetUp() override {
    RealCommand::SetUp();
    file = (folder / "host.json").string();
  }
};

TEST_F(CaptureCommand, WritesASnapshotThatPlaysBack) {
  const Json snapshot = captured({});
  EXPECT_EQ(snapshot["format"], "zeb-host-snapshot");
  EXPECT_EQ(snapshot["version"], 1);
  EXPECT_FALSE(snapshot["links"].empty());
  EXPECT_EQ(zebcim({"tree", "--source", file}).status, 0);
}

TEST_F(CaptureCommand, AnonymizedItHasNoAddressOfThisHost) {
  const Json plain = captured({});
  std::vector<std::string> own;
  for (const Json& address : plain["addresses"]) own.push_back(address["address"]);
  const std::string anonymized = captured({"--anonymize"}).dump();
  for (const std::string& address : own) {
    if (!tellsTheHost(address)) continue;
    EXPECT_THAT(anonymized, Not(HasSubstr("\"" + address + "\"")));
  }
}

TEST_F(CaptureCommand, AFileThatCannotBeWrittenIsAnError) {
  const Outcome outcome = zebcim({"capture", (folder / "missing/host.json").string()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err, "");
}

/// Links that somebody else has put where root captures to.
TEST_F(CaptureCommand, FollowsNoLink) {
  const std::string other = (folder / "other").string();
  std::ofstream(other) << "theirs";
  const auto isUntouched = [&] { return contentOf(other) == "theirs"; };
  std::filesystem::create_symlink(other, file + ".part");
  captured({});
  EXPECT_TRUE(isUntouched());
  std::filesystem::remove(file);
  std::filesystem::create_symlink(other, file);
  const Outcome outcome = zebcim({"capture", file});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("cannot write " + file + ": Too many levels of symbolic links"));
  EXPECT_TRUE(isUntouched());
  EXPECT_TRUE(std::filesystem::is_symlink(file));
}

TEST_F(CaptureCommand, LeavesNothingButTheFile) {
  captured({});
  const auto entries = std::filesystem::directory_iterator(folder.path());
  for (const auto& entry : entries) EXPECT_THAT(entry.path().string(), Not(HasSubstr("part")));
}

TEST_F(CaptureCommand, PlaysNoDeviceBack) {
  for (const std::vector<std::string>& words : {std::vector<std::string>{"--source", "/dev/zero", "tree"},
                                                {"--source", "/dev/zero", "serve", "--http", "127.0.0.1:0",
                                                 "--https", "none", "--state", folder.path().string()}}) {
    const Outcome outcome = zebcim(words);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                HasSubstr("cannot read the snapshot '/dev/zero': expected a file, not a device or a pipe"));
  }
}

TEST_F(CaptureCommand, WrongUsageShowsTheUsage) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"capture"}, {"capture", "a", "b"}, {"capture", "a", "--anonymise"}}) {
    const Outcome outcome = zebcim(words);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("Usage: "));
  }
}

}  // namespace
}  // namespace ZebManager
