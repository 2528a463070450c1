// Where zeb-register finds OpenPegasus, and where it puts link and registration.
#include <gmock/gmock.h>
#include <spawn.h>
#include <unistd.h>

#include "packaging/StandIns.h"
#include "posix/Arguments.h"
#include "posix/ChildProcess.h"

namespace ZebManager {
namespace {

TEST(RegisterPegasusPlaces, AsksWhichNamespaceHasTheRegistrations) {
  for (const std::string interop : {"root/PG_InterOp", "root/interop", "interop"}) {
    const FakeRoot root;
    // All three are there.
    addPegasus(root, interop);
    root.write("/var/lib/Pegasus/repository/root#interop/classes/CIM_ManagedElement", "");
    ASSERT_EQ(root.doRegister().status, 0);
    std::string folder = interop;
    if (folder.find('/') != std::string::npos) folder[folder.find('/')] = '#';
    EXPECT_TRUE(root.has(pegasusModule(folder))) << interop;
  }
}

TEST(RegisterPegasusPlaces, TakesTheNamespaceThatItIsTold) {
  const FakeRoot root;
  addPegasus(root, "root/own");
  EXPECT_EQ(root.doRegister().status, 1);
  EXPECT_EQ(root.doRegister({"--interop", "root/own"}).status, 0);
  EXPECT_TRUE(root.has(pegasusModule("root#own")));
}

TEST(RegisterPegasusPlaces, PutsTheLinkWhereTheServerLooks) {
  const FakeRoot root;
  addPegasus(root);
  root.setHabits("provider-folders /opt/site/providers:/usr/lib/cmpi");
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_EQ(root.linkAt("/opt/site/providers" + kLibrary), PROVIDER_FOLDER + kLibrary);
  EXPECT_FALSE(root.has(kPegasusProviders + kLibrary));
  ASSERT_EQ(root.doUnregister().status, 0);
  EXPECT_FALSE(root.has("/opt/site/providers" + kLibrary));
}

TEST(RegisterPegasusPlaces, PutsNoLinkWhereTheServerFindsThePlugIn) {
  const FakeRoot root;
  addPegasus(root);
  root.setHabits("provider-folders /usr/lib/Pegasus/providers:" PROVIDER_FOLDER);
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_FALSE(root.has(kPegasusProviders + kLibrary));
}

TEST(RegisterPegasusPlaces, PutsTheLinkWhereItIsTold) {
  const FakeRoot root;
  addPegasus(root);
  ASSERT_EQ(root.doRegister({"--providers", "/opt/own"}).status, 0);
  EXPECT_EQ(root.linkAt("/opt/own" + kLibrary), PROVIDER_FOLDER + kLibrary);
}

/// Installed in a folder of its own, with programs in its bin and providers in its lib.
TEST(RegisterPegasusPlaces, FindsOneElsewhereWhenTold) {
  for (const bool option : {true, false}) {
    const FakeRoot root;
    addPegasus(root, "root/interop", "/opt/site/bin");
    root.setHabits("provider-folders lib");
    EXPECT_EQ(root.doRegister().status, 1);
    const Outcome outcome = option ? root.doRegister({"--pegasus-home", "/opt/site"})
                                   : root.doRegisterIn({"PEGASUS_HOME=/opt/site"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(root.linkAt("/opt/site/lib" + kLibrary), PROVIDER_FOLDER + kLibrary);
    // It is found again without being told, as when the package is removed.
    EXPECT_EQ(root.doUnregister().out, "zeb-unregister: OpenPegasus: no longer registered\n");
    EXPECT_FALSE(root.has("/opt/site/lib" + kLibrary));
    EXPECT_FALSE(root.has(kPegasusState));
  }
}

TEST(RegisterPegasusPlaces, TakesNoOtherThanTheOneThatItIsTold) {
  const FakeRoot root;
  addPegasus(root);
  const Outcome outcome = root.doRegister({"--pegasus-home", "/opt/site"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "zeb-register: no cimprovider in '/opt/site/bin'; --help tells more\n");
}

TEST(RegisterPegasusPlaces, FindsOneElsewhereThatRuns) {
  const FakeRoot root;
  addPegasus(root, "root/interop", "/opt/site/bin");
  root.setHabits("provider-folders lib");
  const std::string server = root.path("/opt/site/bin/cimserver");
  std::filesystem::copy("/bin/sleep", server);
  std::vector<std::string> words = {"cimserver", "100"};
  pid_t id = -1;
  ASSERT_EQ(posix_spawn(&id, server.c_str(), nullptr, nullptr, ZEB::argumentsOf(words).data(), environ), 0);
  const ZEB::ChildProcess running(id);
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(root.linkAt("/opt/site/lib" + kLibrary), PROVIDER_FOLDER + kLibrary);
}

}  // namespace
}  // namespace ZebManager
