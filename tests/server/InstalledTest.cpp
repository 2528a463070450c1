// The server as it is installed.
#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>

#include "Server.h"
#include "WbemClient.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {
namespace {

/// Programs and schema in the places where an installation has them.
class Installation {
 public:
  Installation() {
    for (const auto& [file, place] : {std::pair{ZEB_CIM, "bin/zebcim"},
                                      {ZEB_CIM_SERVER, "libexec/zeb/zebcim-server"},
                                      {ZEB_CIM_LOGIN, "libexec/zeb/zebcim-login"}}) {
      std::filesystem::create_directories((_folder / place).parent_path());
      std::filesystem::copy_file(file, _folder / place);
    }
    std::filesystem::create_directories(_folder / "share/zeb");
    std::filesystem::create_directory_symlink(ZEB_SCHEMAS, _folder / "share/zeb/schema");
  }

  std::string zebcim() const { return (_folder / "bin/zebcim").string(); }

 private:
  const ZEB::TemporaryFolder _folder;
};

TEST(InstalledClientTest, TheInstalledProgramsFindEachOther) {
  if (wbemClient().empty()) GTEST_SKIP() << "the package sblim-wbemcli is not installed";
  const Installation installation;
  Server server({"--source", ZEB_SNAPSHOTS "/one_port.json"}, {}, {.zebcim = installation.zebcim()});
  const Outcome ports = ask(server, "http", {"ei", "root/jxv:ZEB_EthernetPort"});
  EXPECT_THAT(ports.out, testing::HasSubstr("-PermanentAddress=\"001b2100005e\"\n"));
  EXPECT_EQ(server.stop(), 0);
}

}  // namespace
}  // namespace ZebManager
