// What doctor says when all is well, and when something is not.
#include <sqlite3.h>

#include "DoctorCommand.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

using ZEB::test::contentOf;

/// A file and its journal as they are while a transaction has written more than memory may hold.
void leaveChangeHalfMade(const std::string& file) {
  const std::string copy = file + ".copy";
  std::filesystem::copy_file(file, copy);
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(copy.c_str(), &database), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(database,
                         "PRAGMA cache_size = 1; BEGIN IMMEDIATE; CREATE TABLE half (made);"
                         "INSERT INTO half VALUES (randomblob(100000))",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  for (const char* const part : {"", "-journal"})
    std::filesystem::copy_file(copy + part, file + part, std::filesystem::copy_options::overwrite_existing);
  sqlite3_exec(database, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(database);
  std::filesystem::remove(copy);
}

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

/// As a process leaves it that was killed half way: the next who writes takes it back.
TEST_F(DoctorCommand, AChangeThatWasInterruptedIsNoTroubleAndLeftAsItIs) {
  makeStores();
  const std::string store = (folder / "store/ZEB_EthEventSettings.db").string();
  const std::string sound = contentOf(store);
  leaveChangeHalfMade(store);
  ASSERT_NE(contentOf(store), sound);
  ASSERT_TRUE(std::filesystem::exists(store + "-journal"));
  const auto before = traces();
  const Outcome outcome = doctor();
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("store      ok      " + store + "\n"));
  EXPECT_EQ(traces(), before);
  makeStores();
  EXPECT_FALSE(std::filesystem::exists(store + "-journal"));
  EXPECT_EQ(contentOf(store), sound);
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

TEST_F(DoctorCommand, LooksForItWhereTheConfigurationSays) {
  post(report().dump());
  const std::string file = (folder / "qv-zeb.toml").string();
  std::ofstream(file) << "run-directory = \"" << (folder / "run").string() << "\"\n";
  const Outcome outcome = run(
      ZEB_CIM,
      {"doctor", "--source", snapshotFile("teams"), "--plugin", ZEB_REAL_PLUGIN, "--schema", ZEB_SCHEMA_FILE},
      {"ZEB_CONFIG=" + file, "ZEB_STORE_DIR=" + (folder / "store").string()});
  EXPECT_THAT(outcome.out, HasSubstr(", process " + std::to_string(getpid()) + "\n"));
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

TEST_F(DoctorCommand, WrongUsageShowsTheUsage) {
  const Outcome outcome = zebcim({"doctor", "eth0"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("Usage: "));
}

}  // namespace
}  // namespace ZebManager
