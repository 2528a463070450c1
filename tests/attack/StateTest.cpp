// Disks that take nothing: what the server knows it serves, and what it cannot keep it refuses.
#include <gmock/gmock.h>
#include <sys/mount.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

#include "Attack.h"
#include "Ground.h"
#include "Process.h"
#include "Subscriber.h"
#include "Unit.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;

void command(const std::string& text) {
  ASSERT_EQ(std::system(text.c_str()), 0) << text;
}

/// A small disk of the server's own.
class StateDisk {
 public:
  StateDisk() { mountAs(0); }
  StateDisk(const StateDisk&) = delete;
  StateDisk& operator=(const StateDisk&) = delete;
  ~StateDisk() { umount2(path().c_str(), MNT_DETACH); }

  std::string path() const { return (_folder / "disk").string(); }
  void fill() const {
    command("dd if=/dev/zero of=" + path() + "/filler bs=1k 2>/dev/null; test -e " + path() + "/filler");
  }
  void empty() const { std::filesystem::remove(path() + "/filler"); }
  void makeReadOnly() { mountAs(MS_REMOUNT | MS_RDONLY); }

 private:
  void mountAs(unsigned long flags) {
    std::filesystem::create_directories(path());
    std::filesystem::permissions(_folder.path(), std::filesystem::perms(0755));
    const std::string options = "size=1m,mode=750,uid=" + std::to_string(kServerUser);
    if (mount("tmpfs", path().c_str(), "tmpfs", flags, options.c_str()) != 0)
      throw std::runtime_error("mount");
  }

  const ZEB::TemporaryFolder _folder;
};

class State : public testing::Test {
 protected:
  void SetUp() override {
    REQUIRE_GROUND();
    disk.emplace();
  }

  enum class Stored { Kept, Refused, Unclear };

  void start() {
    if (unit) unit->stop();
    unit.reset();
    unit.emplace(UnitOptions{.plugin = {"--include-virtual"}, .state = disk->path()});
  }
  std::string subscriptions() const {
    const std::string body = call("EnumerateInstances",
                                  "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME "
                                  "NAME=\"CIM_IndicationSubscription\"/></IPARAMVALUE>",
                                  {"root", "interop"});
    return ask(unit->http(), post(body, "EnumerateInstances", "root/interop"));
  }
  Stored store(const std::string& name) const {
    const std::string parameter =
        "<IPARAMVALUE NAME=\"NewInstance\"><INSTANCE CLASSNAME=\"CIM_IndicationFilter\">"
        "<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>" +
        name +
        "</VALUE></PROPERTY><PROPERTY NAME=\"Query\" TYPE=\"string\"><VALUE>SELECT * FROM "
        "ZEB_EthernetIndication</VALUE></PROPERTY><PROPERTY NAME=\"QueryLanguage\" TYPE=\"string\">"
        "<VALUE>WQL</VALUE></PROPERTY></INSTANCE></IPARAMVALUE>";
    const std::string answer =
        ask(unit->http(), post(call("CreateInstance", parameter, {"root", "interop"}), "CreateInstance",
                               "root/interop", credentials("writer", "secret") + "Connection: close\r\n"));
    if (answer.find("it cannot be kept") != std::string::npos) return Stored::Refused;
    return answer.find("<INSTANCENAME") != std::string::npos ? Stored::Kept : Stored::Unclear;
  }
  /// Everything but what needs the disk.
  void expectService() const {
    EXPECT_EQ(statusOf(ask(unit->http(), instancesOf("ZEB_EthernetPort"))), 200);
    EXPECT_THAT(subscriptions(), HasSubstr("<INSTANCE CLASSNAME=\"CIM_IndicationSubscription\""));
    EXPECT_EQ(store("other"), Stored::Refused);
    EXPECT_THAT(unit->log(), HasSubstr("interop.db cannot be written"));
    EXPECT_THAT(unit->log(), HasSubstr("delivery.db cannot be written"));
  }
  static void pullAndPlug() {
    command("ip link set there down");
    std::this_thread::sleep_for(std::chrono::seconds(1));
    command("ip link set there up");
  }

  std::optional<StateDisk> disk;
  TestListener listener;
  std::optional<Unit> unit;
};

TEST_F(State, ThatIsFullServesReadsAndAlerts) {
  start();
  subscribe(*unit, listener.url());
  unit->stop();
  disk->fill();
  start();
  expectService();
  pullAndPlug();
  EXPECT_TRUE(listener.waitFor(2)) << unit->log();
  disk->empty();
  EXPECT_EQ(store("other"), Stored::Kept) << unit->log();
}

TEST_F(State, ThatIsReadOnlyServesReadsAndAlerts) {
  start();
  subscribe(*unit, listener.url());
  unit->stop();
  disk->makeReadOnly();
  start();
  expectService();
  pullAndPlug();
  EXPECT_TRUE(listener.waitFor(2)) << unit->log();
}

/// As after the first installation, with nothing to read.
TEST_F(State, ThatIsReadOnlyFromTheFirstServesReads) {
  disk->makeReadOnly();
  start();
  EXPECT_EQ(statusOf(ask(unit->http(), instancesOf("ZEB_EthernetPort"))), 200);
  EXPECT_EQ(store("other"), Stored::Refused);
  EXPECT_THAT(unit->log(), HasSubstr("interop.db cannot be written"));
  EXPECT_THAT(unit->log(), HasSubstr("the certificate is another one at the next start"));
}

/// What can neither be read nor put aside costs what it held, and not the server.
TEST_F(State, ThatIsReadOnlyAndDamagedServesReads) {
  start();
  unit->stop();
  for (const char* const name : {"interop.db", "delivery.db", "alertmanager.db"})
    std::ofstream(disk->path() + "/" + name) << "this is no database, and it is long enough to tell";
  disk->makeReadOnly();
  start();
  EXPECT_EQ(statusOf(ask(unit->http(), instancesOf("ZEB_EthernetPort"))), 200) << unit->log();
  EXPECT_EQ(store("other"), Stored::Refused);
  for (const char* const name : {"interop.db", "delivery.db"})
    EXPECT_THAT(unit->log(), HasSubstr(std::string(name) + " is damaged")) << unit->log();
}

}  // namespace
}  // namespace ZebManager
