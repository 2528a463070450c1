// What doctor says when all is well, and when something is not.
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

#include "RealCommand.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

class DoctorCommand : public RealCommand {
 protected:
  Outcome doctor(const std::vector<std::string>& extra = {}) const {
    return zebcim({"doctor", "--source", snapshotFile("teams")}, extra);
  }

  void makeStores() const {
    ASSERT_EQ(zebcim({"instances", "settings", "--source", snapshotFile("teams")}).status, 0);
  }
  /// Of everything below the folder: name, length, and when it was last changed.
  std::map<std::string, std::string> traces() const {
    std::map<std::string, std::string> all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
      std::ifstream in(entry.path(), std::ios::binary);
      const std::string content =
          entry.is_regular_file() ? std::string(std::istreambuf_iterator<char>(in), {}) : "";
      all[entry.path()] =
          content + std::to_string(std::filesystem::last_write_time(entry).time_since_epoch().count());
    }
    return all;
  }

  /// What a plug-in in this process would have reported.
  static Json report() {
    std::string name;
    std::getline(std::ifstream("/proc/self/comm"), name);
    return {{"pid", getpid()},
            {"process", name},
            {"started", std::time(nullptr) - 1000},
            {"source", nullptr},
            {"autostart", true},
            {"pass",
             {{"at", std::time(nullptr)}, {"outcome", "done"}, {"failure", nullptr}, {"seconds", 0.0015}}},
            {"passes", 34},
            {"failures", 0},
            {"linkMessages", 5},
            {"indications", true},
            {"unread", nullptr},
            {"stores", Json::array({{{"name", "A"}, {"file", "/a.db"}, {"failure", nullptr}}})},
            {"records", {{"file", "/r.toml"}, {"failure", nullptr}}}};
  }
  void post(const std::string& text) const {
    std::filesystem::create_directories(folder / "run");
    std::ofstream(folder / "run/health.json") << text;
  }
  void expectTrouble(const Outcome& outcome, const std::string& line) const {
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr(line));
  }
};

TEST_F(DoctorCommand, FindsNothingWrongWhereNothingIs) {
  const Outcome outcome = doctor();
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, HasSubstr("plug-in    ok      loads and starts\n"));
  EXPECT_THAT(outcome.out, HasSubstr("reading    ok      the recording " + snapshotFile("teams") + "\n"));
  EXPECT_THAT(outcome.out,
              HasSubstr("store      ok      " + (folder / "store/ZEBEthernetPort.db").string() + "\n"));
  EXPECT_THAT(outcome.out,
              HasSubstr("store      ok      " + (folder / "store/ZEB_EthEventSettings.db").string()));
  EXPECT_THAT(outcome.out, HasSubstr("records    ok      /"));
  EXPECT_THAT(outcome.out, HasSubstr("running    -       no object manager has reported in "));
}

TEST_F(DoctorCommand, LeavesNoTraceInTheRunDirectory) {
  EXPECT_EQ(doctor().status, 0);
  EXPECT_FALSE(std::filesystem::exists(folder / "run"));
}

TEST_F(DoctorCommand, MakesNoStores) {
  EXPECT_EQ(doctor().status, 0);
  EXPECT_FALSE(std::filesystem::exists(folder / "store"));
}

/// Neither sound stores nor damaged ones, nor what another program made of them.
TEST_F(DoctorCommand, ChangesNothing) {
  makeStores();
  std::filesystem::remove(folder / "store/ZEBEthernetPort.db");
  const std::string settings = (folder / "store/ZEB_EthEventSettings.db").string();
  const auto leavesAlone = [&](int status) {
    const auto before = traces();
    EXPECT_EQ(doctor().status, status);
    EXPECT_EQ(traces(), before);
  };
  leavesAlone(0);
  {
    std::fstream bytes(settings, std::ios::in | std::ios::out | std::ios::binary);
    // Where a SQLite file says which kind of journal it has: 2 is another than that of a store.
    bytes.seekp(18).put(2).put(2).flush();
  }
  leavesAlone(1);
  std::ofstream(settings) << "this is no database, but it is as long as the header of one, or even longer: "
                          << std::string(100, '.');
  expectTrouble(doctor(), "store      FAILED  " + settings + ": file is not a database");
  leavesAlone(1);
}

TEST_F(DoctorCommand, TellsOfThePlugInThatRuns) {
  post(report().dump());
  const Outcome outcome = doctor();
  EXPECT_EQ(outcome.status, 0) << outcome.out;
  EXPECT_THAT(outcome.out, HasSubstr(", process " + std::to_string(getpid()) + "\n"));
  EXPECT_THAT(outcome.out, HasSubstr(" s ago, done, took 1.5 ms; 34 passes, 0 failed\n"));
  EXPECT_THAT(outcome.out, HasSubstr("next pass  ok      in "));
  EXPECT_THAT(outcome.out, HasSubstr("messages   ok      5 seen\n"));
  EXPECT_THAT(outcome.out, HasSubstr("alerts     -       somebody listens\n"));
}

TEST_F(DoctorCommand, JsonHasFindingsAndTheReport) {
  post(report().dump());
  const Outcome outcome = zebcim({"doctor", "--json", "--source", snapshotFile("teams")});
  EXPECT_EQ(outcome.status, 0);
  const Json document = Json::parse(outcome.out);
  EXPECT_EQ(document["healthy"], true);
  EXPECT_EQ(document["report"]["linkMessages"], 5);
  EXPECT_LT(document["reportAge"], 60);
  EXPECT_EQ(document["findings"][3],
            (Json{{"what", "plug-in"}, {"state", "ok"}, {"text", "loads and starts"}}));
}

TEST_F(DoctorCommand, ABadRecordsFileIsTrouble) {
  const std::string records = (folder / "records.toml").string();
  std::ofstream(records) << "[ZEB_EthernetIndication\n";
  expectTrouble(doctor({"ZEB_RECORDS=" + records}), "records    FAILED  " + records);
}

TEST_F(DoctorCommand, ARecordThatCannotBeUsedIsTrouble) {
  const std::string records = (folder / "records.toml").string();
  std::ofstream(records) << "[ZEB_EthernetIndication.1]\nsummary = \"no more than that\"\n";
  expectTrouble(doctor({"ZEB_RECORDS=" + records}), "records    FAILED  " + records);
}

TEST_F(DoctorCommand, StoresThatCannotBeOpenedAreTrouble) {
  const Outcome outcome = doctor({"ZEB_STORE_DIR=/dev/null/store"});
  expectTrouble(outcome, "store      FAILED  /dev/null/store/ZEBEthernetPort.db: ");
  expectTrouble(outcome, "store      FAILED  /dev/null/store/ZEB_EthEventSettings.db: ");
}

TEST_F(DoctorCommand, AStoreOfANewerFormatIsTrouble) {
  makeStores();
  const std::string store = (folder / "store/ZEBEthernetPort.db").string();
  std::fstream bytes(store, std::ios::in | std::ios::out | std::ios::binary);
  // The last byte of what a SQLite file has for the format that its user gives it.
  bytes.seekp(63).put(2).flush();
  expectTrouble(doctor(), "store      FAILED  " + store + ": its format 2 is newer than 1");
}

TEST_F(DoctorCommand, StoresThatKeepNoChangeAreTrouble) {
  makeStores();
  // No file may grow beyond 4 KiB, as little as that of a journal.
  std::vector<std::string> words = {"-c",
                                    "trap '' XFSZ; ulimit -f 8; exec \"$@\"",
                                    "sh",
                                    ZEB_CIM,
                                    "doctor",
                                    "--source",
                                    snapshotFile("teams"),
                                    "--plugin",
                                    ZEB_REAL_PLUGIN,
                                    "--schema",
                                    ZEB_SCHEMA_FILE};
  const Outcome outcome = run("/bin/sh", words, environment());
  for (const char* store : {"ZEBEthernetPort.db", "ZEB_EthEventSettings.db"}) {
    expectTrouble(outcome, "store      FAILED  " + (folder / "store" / store).string() + ": ");
    EXPECT_THAT(outcome.out, HasSubstr("File too large"));
  }
}

TEST_F(DoctorCommand, APlugInThatDoesNotLoadIsTrouble) {
  const Outcome outcome =
      run(ZEB_CIM, {"doctor", "--plugin", "/dev/null", "--schema", ZEB_SCHEMA_FILE}, environment());
  expectTrouble(outcome, "plug-in    FAILED  cannot load the plug-in '/dev/null': ");
}

TEST_F(DoctorCommand, ASchemaThatIsNotThereIsTrouble) {
  const Outcome outcome = run(ZEB_CIM, {"doctor", "--schema", "/missing.mof"}, environment());
  expectTrouble(outcome, "schema     FAILED  ");
}

TEST_F(DoctorCommand, ARecordingThatCannotBeReadIsTrouble) {
  expectTrouble(zebcim({"doctor", "--source", "/missing.json"}),
                "plug-in    FAILED  cannot read the snapshot");
}

TEST_F(DoctorCommand, AProcessThatLeftItsReportBehindIsTrouble) {
  Json left = report();
  left["pid"] = 999'999'999;
  post(left.dump());
  expectTrouble(doctor(), "process 999999999: it is gone and has not ended in good order\n");
}

TEST_F(DoctorCommand, AnotherProcessOfThatNumberIsNotTheOne) {
  Json left = report();
  left["process"] = "another";
  post(left.dump());
  expectTrouble(doctor(), "it is gone and has not ended in good order\n");
}

TEST_F(DoctorCommand, AReportThatIsNoneIsTrouble) {
  post("{\"pid\": ");
  expectTrouble(doctor(), "health.json' is no health report: ");
}

TEST_F(DoctorCommand, APassThatFailedIsTrouble) {
  Json failed = report();
  failed["pass"]["outcome"] = "failed";
  failed["pass"]["failure"] = "no memory";
  failed["failures"] = 1;
  post(failed.dump());
  expectTrouble(doctor(), "failed, took 1.5 ms; 34 passes, 1 failed: no memory\n");
}

TEST_F(DoctorCommand, APassThatIsLongOverdueIsTrouble) {
  Json late = report();
  late["pass"]["at"] = std::time(nullptr) - 500;
  post(late.dump());
  expectTrouble(doctor(), "the timer has stopped, or a pass hangs\n");
}

TEST_F(DoctorCommand, WhatTheRunningOneCannotReadOrOpenIsTrouble) {
  Json blind = report();
  blind["unread"] = "netlink: permission denied";
  blind["stores"][0]["failure"] = "disk full";
  blind["records"]["failure"] = "/r.toml:3: no summary";
  post(blind.dump());
  const Outcome outcome = doctor();
  expectTrouble(outcome, "reading    FAILED  it could not be read: netlink: permission denied\n");
  expectTrouble(outcome, "store      FAILED  /a.db: disk full\n");
  expectTrouble(outcome, "records    FAILED  /r.toml:3: no summary\n");
}

/// A command is no service: what it loads says nothing in the place of one, and takes nothing away.
TEST_F(DoctorCommand, NothingButAServicePosts) {
  post("of a service");
  const std::string configuration = (folder / "qv-zeb.toml").string();
  std::ofstream(configuration) << "run-directory = \"" << (folder / "run").string()
                               << "\"\nstore-directory = \"" << (folder / "store").string() << "\"\n";
  for (const std::vector<std::string>& words : {std::vector<std::string>{"watch", "--for", "1"},
                                                {"watch", "--for", "1", "--source", snapshotFile("teams")},
                                                {"tree", "--source", snapshotFile("teams")}}) {
    EXPECT_EQ(run(ZEB_CIM, words, {"ZEB_CONFIG=" + configuration}).status, 0);
    std::ifstream in(folder / "run/health.json");
    std::string text;
    std::getline(in, text, '\0');
    EXPECT_EQ(text, "of a service") << words.front();
    EXPECT_FALSE(std::filesystem::exists(folder / "run/status.json"));
  }
}

/// What the server's own reader says, and what its file names.
TEST_F(DoctorCommand, LooksAtTheConfigurationOfTheServer) {
  const std::string file = (folder / "zebcim.toml").string();
  const auto doctorOf = [&](const std::string& text) {
    std::ofstream(file) << text;
    return zebcim({"doctor", "--source", snapshotFile("teams"), "--config", file});
  };
  expectTrouble(doctorOf("[listen\n"), "server     FAILED  " + file + ":1: ");
  expectTrouble(doctorOf("[listen]\nhtpp = \"none\"\n"),
                "'listen.htpp' is unknown; the server does not start with it\n");
  expectTrouble(doctorOf("[limits]\nconnections = -1\n"),
                "server     FAILED  " + file + ":2: 'limits.connections' has a bad value");
  expectTrouble(doctorOf("[access]\nwrite-group = \"no-such-group\"\n"),
                "writers    FAILED  there is no group 'no-such-group': root alone may write; groupadd");
  expectTrouble(doctorOf("[access]\npam-folder = \"" + folder.path().string() + "\"\n"),
                "logins     FAILED  there is no PAM service " + (folder / "zebcim").string());
  expectTrouble(doctorOf("[listen]\ncertificate = \"/nope.pem\"\n"),
                "https      FAILED  the certificate /nope.pem cannot be read");
  std::ofstream(folder / "zebcim") << "auth required pam_deny.so\n";
  const Outcome well = doctorOf(
      "[listen]\nhttp = \"none\"\nhttps = \"none\"\n[access]\nwrite-group = \"root\"\npam-folder = \"" +
      folder.path().string() + "\"\n[state]\ndirectory = \"" + (folder / "state").string() + "\"\n");
  EXPECT_EQ(well.status, 0) << well.out;
  EXPECT_THAT(well.out, HasSubstr("server     ok      " + file + "\n"));
  EXPECT_THAT(well.out, HasSubstr("writers    ok      root and the group 'root': "));
  EXPECT_FALSE(std::filesystem::exists(folder / "state")) << "a look makes nothing";
}

TEST_F(DoctorCommand, LooksAtTheConfigurationOfThePlugIn) {
  const std::string file = (folder / "qv-zeb.toml").string();
  std::ofstream(file) << "include-vrtual = true\nperfmon = 3\n";
  const Outcome outcome = zebcim({"doctor", "--source", snapshotFile("teams")}, {"ZEB_CONFIG=" + file});
  expectTrouble(outcome, "settings   FAILED  " + file + ":1: unknown key include-vrtual\n");
  expectTrouble(outcome, "settings   FAILED  " + file + ":2: perfmon has to be true or false\n");
}

/// A user who is nobody in particular is told what only root sees, and nothing fails for it.
TEST_F(DoctorCommand, SaysToAnOrdinaryUserWhatItCannotSee) {
  if (geteuid() != 0) GTEST_SKIP() << "needs to be root to be somebody else";
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  std::filesystem::create_directories(folder / "store");
  std::filesystem::permissions(folder / "store", std::filesystem::perms(0700));
  post(report().dump());
  std::filesystem::permissions(folder / "run/health.json", std::filesystem::perms(0600));
  const Outcome outcome =
      run("/usr/bin/setpriv",
          {"--reuid=64009", "--regid=64009", "--clear-groups", ZEB_CIM, "doctor", "--source",
           snapshotFile("teams"), "--plugin", ZEB_REAL_PLUGIN, "--schema", ZEB_SCHEMA_FILE},
          environment());
  EXPECT_EQ(outcome.status, 0) << outcome.out;
  EXPECT_THAT(outcome.out, HasSubstr("rights     -       an ordinary user: "));
  EXPECT_THAT(outcome.out, HasSubstr("store      -       " + (folder / "store").string()));
  EXPECT_THAT(outcome.out, HasSubstr("running    -       '" + (folder / "run/health.json").string() +
                                     "' cannot be read: "));
}

class CheckCommand : public RealCommand {};

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

TEST_F(CheckCommand, KnowsWhatItCannotSay) {
  const Outcome missing = zebcim({"check", "--source", "/nope.json"});
  EXPECT_EQ(missing.status, 3);
  EXPECT_THAT(missing.out, testing::StartsWith("ETHERNET UNKNOWN - cannot read the snapshot '/nope.json'"));
  EXPECT_EQ(zebcim({"check", "eth0"}).status, 3);
}

TEST_F(DoctorCommand, WrongUsageShowsTheUsage) {
  const Outcome outcome = zebcim({"doctor", "eth0"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Usage: "));
}

}  // namespace
}  // namespace ZebManager
