#include "ClassTest.h"
#include "MemoryHost.h"
#include "classes/port/ZEB_EthernetStatistics.h"

namespace ZEB::test {
namespace {

using ethernet::PortFacts;

class StatisticsTest : public ClassTest {
 protected:
  ZEB_EthernetStatistics make(const EthernetPort& record) {
    return {recorded.logger, nameSpace, 3, 5, record};
  }
  Table read(const EthernetPort& record) { return propertiesOf(make(record).makeInstance()); }
};

Table everyStatistic() {
  return {
      {"InstanceID", "string \"JXV:ZEB_EthernetStatistics:3\""},
      {"Caption", "string \"Gigabit Adapter\""},
      {"ElementName", "string \"Gigabit Adapter\""},
      {"Description", "string \"Ethernet port 2 on ethernet controller 5\""},
      {"StatisticTime", "datetime 20231114221320.000000+000"},
      {"SampleInterval", "datetime 00000000000000.000000:000"},
      {"BytesTransmitted", "uint64 14"},
      {"BytesReceived", "uint64 13"},
      {"PacketsTransmitted", "uint64 12"},
      {"PacketsReceived", "uint64 11"},
      {"AlignmentErrors", "uint32 1"},
      {"FCSErrors", "uint32 2"},
      {"SingleCollisionFrames", "uint32 3"},
      {"MultipleCollisionFrames", "uint32 4"},
      {"DeferredTransmissions", "uint32 5"},
      {"LateCollisions", "uint32 6"},
      {"ExcessiveCollisions", "uint32 7"},
      {"InternalMACTransmitErrors", "uint32 8"},
      {"InternalMACReceiveErrors", "uint32 9"},
  };
}

TEST_F(StatisticsTest, ShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(portOf(everyPortFacts())), everyStatistic());
}

TEST_F(StatisticsTest, IsKeyedByItsIdAlone) {
  EXPECT_EQ(keysOf(make(EthernetPort()).makeObjectPath()),
            (Table{{"InstanceID", "string \"JXV:ZEB_EthernetStatistics:3\""}}));
}

class StatisticsRow : public StatisticsTest, public testing::WithParamInterface<UnknownRow<PortFacts>> {};

TEST_P(StatisticsRow, StandsIn) {
  PortFacts facts = everyPortFacts();
  GetParam().forget(facts);
  EXPECT_EQ(read(portOf(facts)), edited(everyStatistic(), GetParam().changes));
}

template <std::optional<std::uint64_t> ethernet::MacStatistics::*counter>
void forgetError(PortFacts& facts) {
  (facts.link.ethtool.mac.*counter).reset();
}

using Mac = ethernet::MacStatistics;

INSTANTIATE_TEST_SUITE_P(
    Rows, StatisticsRow,
    testing::Values(
        UnknownRow<PortFacts>{
            "Caption",
            forgetProduct,
            {{"Caption", "string \"Ethernet Port\""}, {"ElementName", "string \"Ethernet Port\""}}},
        UnknownRow<PortFacts>{"PortNumber",
                              [](PortFacts& f) { f.number.reset(); },
                              {{"Description", "string \"Ethernet port on ethernet controller 5\""}}},
        UnknownRow<PortFacts>{"Traffic",
                              [](PortFacts& f) { f.link.statistics.reset(); },
                              {{"BytesTransmitted", "uint64 0"},
                               {"BytesReceived", "uint64 0"},
                               {"PacketsTransmitted", "uint64 0"},
                               {"PacketsReceived", "uint64 0"}}},
        UnknownRow<PortFacts>{
            "AlignmentErrors", forgetError<&Mac::alignmentErrors>, {{"AlignmentErrors", "uint32 0"}}},
        UnknownRow<PortFacts>{"FCSErrors", forgetError<&Mac::fcsErrors>, {{"FCSErrors", "uint32 0"}}},
        UnknownRow<PortFacts>{"SingleCollisionFrames",
                              forgetError<&Mac::singleCollisions>,
                              {{"SingleCollisionFrames", "uint32 0"}}},
        UnknownRow<PortFacts>{"MultipleCollisionFrames",
                              forgetError<&Mac::multipleCollisions>,
                              {{"MultipleCollisionFrames", "uint32 0"}}},
        UnknownRow<PortFacts>{
            "DeferredTransmissions", forgetError<&Mac::deferred>, {{"DeferredTransmissions", "uint32 0"}}},
        UnknownRow<PortFacts>{
            "LateCollisions", forgetError<&Mac::lateCollisions>, {{"LateCollisions", "uint32 0"}}},
        UnknownRow<PortFacts>{"ExcessiveCollisions",
                              forgetError<&Mac::excessiveCollisions>,
                              {{"ExcessiveCollisions", "uint32 0"}}},
        UnknownRow<PortFacts>{"InternalMACTransmitErrors",
                              forgetError<&Mac::transmitErrors>,
                              {{"InternalMACTransmitErrors", "uint32 0"}}},
        UnknownRow<PortFacts>{"InternalMACReceiveErrors",
                              forgetError<&Mac::receiveErrors>,
                              {{"InternalMACReceiveErrors", "uint32 0"}}}),
    kByName);

TEST_F(StatisticsTest, OfAPortThatCannotBeReadAreZeros) {
  EXPECT_EQ(read(EthernetPort()), (Table{
                                      {"InstanceID", "string \"JXV:ZEB_EthernetStatistics:3\""},
                                      {"Caption", "string \"Ethernet Port\""},
                                      {"ElementName", "string \"Ethernet Port\""},
                                      {"Description", "string \"Ethernet port on ethernet controller 5\""},
                                      {"StatisticTime", "datetime 19700101000000.000000+000"},
                                      {"SampleInterval", "datetime 00000000000000.000000:000"},
                                      {"BytesTransmitted", "uint64 0"},
                                      {"BytesReceived", "uint64 0"},
                                      {"PacketsTransmitted", "uint64 0"},
                                      {"PacketsReceived", "uint64 0"},
                                      {"AlignmentErrors", "uint32 0"},
                                      {"FCSErrors", "uint32 0"},
                                      {"SingleCollisionFrames", "uint32 0"},
                                      {"MultipleCollisionFrames", "uint32 0"},
                                      {"DeferredTransmissions", "uint32 0"},
                                      {"LateCollisions", "uint32 0"},
                                      {"ExcessiveCollisions", "uint32 0"},
                                      {"InternalMACTransmitErrors", "uint32 0"},
                                      {"InternalMACReceiveErrors", "uint32 0"},
                                  }));
}

TEST_F(StatisticsTest, CountersAreReadAnewForEveryInstance) {
  MemoryHost host;
  host.addPort("eth0").statistics = ethernet::LinkStatistics{1, 2, 3, 4};
  auto statistics = make(host.port(0));
  EXPECT_EQ(textOf(statistics.makeInstance().getProperty("PacketsReceived")), "uint64 1");
  host.link("eth0").statistics->rxPackets = 5;
  EXPECT_EQ(textOf(statistics.makeInstance().getProperty("PacketsReceived")), "uint64 5");
}

}  // namespace
}  // namespace ZEB::test
