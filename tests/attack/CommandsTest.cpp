// Commands of users of this machine, whom the kernel names at the service's socket.
#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

#include "Ground.h"
#include "Process.h"
#include "Unit.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;

constexpr unsigned kWriter = 64002, kReader = 64003;
const std::string kSettings = R"(ZEB_EthEventSettings.InstanceId="JXV:0")";

class LocalUsers : public testing::Test {
 protected:
  void SetUp() override {
    REQUIRE_GROUND();
    unit.emplace();
  }

  Outcome zebcim(unsigned user, const std::vector<std::string>& words) const {
    const std::string id = std::to_string(user);
    std::vector<std::string> all = {"--reuid=" + id, "--regid=" + id, "--clear-groups", ZEB_CIM};
    all.insert(all.end(), words.begin(), words.end());
    return run("/usr/bin/setpriv", all,
               {"ZEB_RUN_DIR=" + (unit->folder() / "run").string(), "ZEB_CONFIG=/dev/null"});
  }
  std::string threshold() const {
    const std::string text = zebcim(kReader, {"get", kSettings}).out;
    const auto at = text.find("FloodThreshold");
    return at == std::string::npos ? text : text.substr(at, text.find('\n', at) - at);
  }

  std::optional<Unit> unit;
};

TEST_F(LocalUsers, AnybodyMayRead) {
  const Outcome got = zebcim(kReader, {"-v", "get", kSettings});
  EXPECT_EQ(got.status, 0) << got.err;
  EXPECT_THAT(got.err, HasSubstr("asking the service"));
}

TEST_F(LocalUsers, RootAndMembersOfTheGroupMayWrite) {
  for (const auto& [user, value] : {std::pair(0U, "31"), {kWriter, "32"}}) {
    const Outcome changed = zebcim(user, {"modify", kSettings, std::string("FloodThreshold=") + value});
    EXPECT_EQ(changed.status, 0) << changed.err;
    EXPECT_THAT(threshold(), testing::EndsWith(value));
  }
}

TEST_F(LocalUsers, OthersMayNeitherWriteNorCallMethods) {
  const std::string before = threshold();
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"modify", kSettings, "FloodThreshold=33"},
        {"invoke", "ZEB_AutoStartEthernetPort", "PerformWork"}}) {
    // The server's own user is nobody in particular.
    for (const auto& [user, name] : {std::pair(kReader, "reader"), {kServerUser, "zebserver"}}) {
      const Outcome refused = zebcim(user, words);
      EXPECT_EQ(refused.status, 1);
      EXPECT_THAT(refused.err,
                  HasSubstr("user '" + std::string(name) +
                            "' may only read; root and members of 'zebcim' may write (CMPI code 2)"));
    }
  }
  EXPECT_EQ(threshold(), before);
}

}  // namespace
}  // namespace ZebManager
