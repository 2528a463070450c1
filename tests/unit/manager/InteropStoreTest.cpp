// The namespace root/interop: what survives a restart, a damaged file and many threads.
#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "InteropFixture.h"
#include "ShortFiles.h"
#include "indications/Sqlite.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using ZEB::test::contentOf;

TEST_F(Interop, EverythingSurvivesARestart) {
  makeOneOfEach();
  Instance* const filter =
      instance("CIM_IndicationFilter", with(filterProperties("arrays"), "ElementName", "it's \"so\""));
  Array* const spaces = makeArray(arena, 2, CMPI_string);
  spaces->body().elements[0] = dataOf(makeString(arena, "root/jxv"));
  spaces->body().elements[1] = dataOf(makeString(arena, ""));
  const CMPIData data = dataOf(spaces);
  filter->ft->setProperty(filter, "SourceNamespaces", &data.value, data.type);
  const CMPIData none = dataOf(makeArray(arena, 0, CMPI_string));
  filter->ft->setProperty(filter, "TemplateVariable", &none.value, none.type);
  ASSERT_EQ(space->createInstance(*makePath(arena, "", "CIM_IndicationFilter"), *filter).code, CMPI_RC_OK);
  const auto before = space->subscriptions();
  const auto started = value(space->getInstance(*subscriptionPath(), nullptr), "SubscriptionStartTime");
  start();
  EXPECT_EQ(space->subscriptions(), before);
  EXPECT_EQ(value(space->getInstance(*subscriptionPath(), nullptr), "SubscriptionStartTime"), started);
  const Reply read = get(filterPath("arrays"));
  EXPECT_EQ(value(read, "ElementName"), R"("it's \"so\"")");
  EXPECT_EQ(value(read, "IndividualSubscriptionSupported"), "TRUE");
  const InstanceBody& body = as<Instance>(read.items()[0].value.inst)->body();
  const ArrayBody& kept = as<Array>(body.properties.find("SourceNamespaces")->data.value.array)->body();
  ASSERT_EQ(kept.count, 2U);
  EXPECT_EQ(textOf(kept.elements[0].value.string), "root/jxv");
  EXPECT_EQ(textOf(kept.elements[1].value.string), "");
  EXPECT_EQ(as<Array>(body.properties.find("TemplateVariable")->data.value.array)->body().count, 0U);
  ASSERT_EQ(space->deleteInstance(*subscriptionPath()).code, CMPI_RC_OK);
  start();
  EXPECT_THAT(space->subscriptions(), IsEmpty());
  EXPECT_EQ(get(handlerPath("h")).code, CMPI_RC_OK);
  EXPECT_THAT(lines, IsEmpty());
}

TEST_F(Interop, ADamagedFileIsPutAside) {
  makeOneOfEach();
  space.reset();
  std::ofstream(directory / "interop.db") << "this is no database, and it is long enough to tell";
  start();
  EXPECT_THAT(lines, ElementsAre(HasSubstr("is damaged")));
  EXPECT_TRUE(std::filesystem::exists(directory / "interop.db.damaged-1"));
  EXPECT_THAT(space->subscriptions(), IsEmpty());
  makeOneOfEach();
  start();
  EXPECT_THAT(space->subscriptions(), SizeIs(1));
}

TEST_F(Interop, WhatNoLongerFitsIsLeftOut) {
  makeOneOfEach();
  space.reset();
  elsewhere("UPDATE value SET property = 'Gone' WHERE property = 'Query'");
  start();
  EXPECT_THAT(lines, ElementsAre(HasSubstr("no property 'Gone' any more")));
  EXPECT_THAT(space->subscriptions(), IsEmpty()) << "its filter is not there";
  EXPECT_EQ(get(handlerPath("h")).code, CMPI_RC_OK);
  changes = 0;
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("f")), CMPI_RC_OK);
  EXPECT_THAT(space->subscriptions(), SizeIs(1)) << "it is whole again";
  EXPECT_EQ(changes, 1);
}

TEST_F(Interop, AFileOfALaterVersionIsNotTouched) {
  space.reset();
  elsewhere("PRAGMA user_version = 99; PRAGMA application_id = 0x5a454263");  // 99 behind "ZEB"
  EXPECT_THROW(start(), ManagerError);
  EXPECT_FALSE(std::filesystem::exists(directory / "interop.db.damaged-1"));
}

TEST_F(Interop, AFileThatCannotBeWrittenRefusesAndChangesNothing) {
  makeOneOfEach();
  elsewhere("DROP TABLE value");
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("g")), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(get(filterPath("g")).code, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_EQ(space->deleteInstance(*subscriptionPath()).code, CMPI_RC_ERR_FAILED);
  EXPECT_THAT(space->subscriptions(), SizeIs(1));
}

class DamagedInterop : public Interop {
 protected:
  void damage() const {
    {
      std::fstream file(directory / "interop.db", std::ios::in | std::ios::out | std::ios::binary);
      elsewhere("PRAGMA wal_checkpoint(TRUNCATE)");
      for (int page = 1; page < 8; ++page) {
        file.seekp(page * 4096);
        file << std::string(64, 'x');
      }
    }
    elsewhere("PRAGMA user_version = 1");  // the pages that are remembered are read again
  }
};

/// What is in memory is not lost with a file that turns out to be damaged while it is in use.
TEST_F(DamagedInterop, CostsNothingWhileTheServerRuns) {
  makeOneOfEach();
  const auto before = space->subscriptions();
  damage();
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("g")), CMPI_RC_OK);
  EXPECT_THAT(lines, ElementsAre(HasSubstr("is damaged")));
  start();
  EXPECT_EQ(get(filterPath("g")).code, CMPI_RC_OK);
  ASSERT_THAT(space->subscriptions(), SizeIs(1));
  EXPECT_EQ(space->subscriptions()[0].name, before[0].name);
}

/// The fresh file takes some of it and then no more; what it lacks it gets with the next change.
TEST_F(DamagedInterop, CostsNothingWhereTheDiskIsFullToo) {
  for (const char* const name : {"a", "b", "c", "d"}) {
    ASSERT_EQ(codeOfCreate("CIM_IndicationFilter",
                           with(filterProperties(name), "ElementName", std::string(60'000, 'x'))),
              CMPI_RC_OK);
  }
  damage();
  {
    const ShortFiles disk(150'000);
    EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("e")), CMPI_RC_ERR_FAILED);
    EXPECT_TRUE(std::filesystem::exists(directory / "interop.db.damaged-1"));
  }
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("f")), CMPI_RC_OK);
  start();
  EXPECT_THAT(space->enumerateInstanceNames("CIM_IndicationFilter").items(), SizeIs(5));
}

/// The server starts all the same, and keeps what it is told once there is room.
TEST_F(DamagedInterop, KeepsNobodyFromStartingWhereTheDiskIsFull) {
  makeOneOfEach();
  for (const rlim_t room : {0u, 4096u, 8192u, 16'384u, 32'768u, 65'536u}) {
    space.reset();
    std::filesystem::remove_all(directory.path());
    std::filesystem::create_directory(directory.path());
    std::ofstream(directory / "interop.db") << "this is no database, and it is long enough to tell";
    {
      const ShortFiles disk(room);
      ASSERT_NO_THROW(start()) << room;
      EXPECT_THAT(space->subscriptions(), IsEmpty()) << room;
    }
    EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("g")), CMPI_RC_OK) << room;
    start();
    EXPECT_EQ(get(filterPath("g")).code, CMPI_RC_OK) << room;
  }
}

TEST_F(Interop, SurvivesRandomDamage) {
  makeOneOfEach();
  space.reset();
  const std::string file = directory / "interop.db";
  const std::string sound = contentOf(file);
  std::mt19937 random(61);
  for (int round = 0; round < 120; ++round) {
    std::string damaged = sound;
    for (int bytes = 1 + round % 8; bytes > 0; --bytes) {
      const std::size_t reach = round % 2 == 0 ? 200 : damaged.size();
      damaged[random() % reach] = static_cast<char>(random());
    }
    space.reset();
    for (const auto& left : std::filesystem::directory_iterator(directory.path()))
      std::filesystem::remove(left);
    std::ofstream(file, std::ios::binary) << damaged;
    ASSERT_NO_THROW(start()) << round;
    ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("g")), CMPI_RC_OK) << round;
    ASSERT_EQ(space->deleteInstance(*path(filterPath("g"))).code, CMPI_RC_OK) << round;
  }
}

TEST_F(Interop, InstancesAreBoundedByTheirLengthToo) {
  settings.mostBytes = 20'000;
  start();
  const std::string large(8'000, 'x');
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", with(filterProperties("f"), "ElementName", large)),
            CMPI_RC_OK);
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", with(filterProperties("g"), "ElementName", large)),
            CMPI_RC_OK);
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", with(filterProperties("h"), "ElementName", large)),
            CMPI_RC_ERR_FAILED);
  EXPECT_EQ(space->deleteInstance(*path(filterPath("f"))).code, CMPI_RC_OK);
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", with(filterProperties("h"), "ElementName", large)),
            CMPI_RC_OK);
}

TEST_F(Interop, ManyThreadsMayAsk) {
  makeOneOfEach();
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) {
        EXPECT_THAT(space->enumerateInstances("CIM_IndicationFilter", nullptr).items(),
                    SizeIs(testing::Ge(1U)));
        EXPECT_THAT(space->subscriptions(), SizeIs(1));
      }
    });
  }
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("g")), CMPI_RC_OK);
    ASSERT_EQ(space->deleteInstance(*path(filterPath("g"))).code, CMPI_RC_OK);
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace ZebManager
