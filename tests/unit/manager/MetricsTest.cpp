// How metrics are written, and that the list of them in the documentation is theirs.
#include <gmock/gmock.h>

#include <fstream>
#include <set>

#include "metrics/Metrics.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::Not;

struct Thing {
  std::string name;
  std::optional<double> value;
};

constexpr std::array kIdentity = {LabelRow<Thing>{"name", [](const Thing& t) { return t.name; }}};
constexpr std::array kNumbers = {
    NumberRow<Thing>{{"zeb_thing_bytes_total", MetricKind::Counter, "bytes", "What it took.", "the test"},
                     [](const Thing& t) { return t.value; }}};

std::string written(const std::vector<Thing>& things, MetricFormat format) {
  Exposition text(format);
  const MetricFamily info{"zeb_thing_info", MetricKind::Info, "", "What it is.", "the test"};
  text.add<Thing>({kIdentity, info, {}, kNumbers}, things);
  return text.text();
}

TEST(Metrics, TheTextFormatNamesFamiliesLikeTheirSeries) {
  EXPECT_EQ(written({{"a", 1}, {"b", std::nullopt}}, MetricFormat::Text),
            "# HELP zeb_thing_info What it is.\n# TYPE zeb_thing_info gauge\n"
            "zeb_thing_info{name=\"a\"} 1\nzeb_thing_info{name=\"b\"} 1\n"
            "# HELP zeb_thing_bytes_total What it took.\n# TYPE zeb_thing_bytes_total counter\n"
            "zeb_thing_bytes_total{name=\"a\"} 1\n");
}

TEST(Metrics, OpenMetricsNamesFamiliesWithoutWhatTheTypeSays) {
  EXPECT_EQ(written({{"a", 1}}, MetricFormat::OpenMetrics),
            "# HELP zeb_thing What it is.\n# TYPE zeb_thing info\nzeb_thing_info{name=\"a\"} 1\n"
            "# HELP zeb_thing_bytes What it took.\n# TYPE zeb_thing_bytes counter\n"
            "# UNIT zeb_thing_bytes bytes\nzeb_thing_bytes_total{name=\"a\"} 1\n");
}

TEST(Metrics, AFamilyWithoutASeriesIsLeftOut) {
  EXPECT_EQ(written({}, MetricFormat::Text), "");
  EXPECT_THAT(written({{"a", std::nullopt}}, MetricFormat::Text), Not(HasSubstr("bytes")));
}

TEST(Metrics, LabelsAreEscaped) {
  EXPECT_THAT(written({{"a\"b\\c\nd", std::nullopt}}, MetricFormat::Text),
              HasSubstr("{name=\"a\\\"b\\\\c\\nd\"} 1\n"));
}

TEST(Metrics, WholeNumbersHaveNoExponent) {
  EXPECT_THAT(written({{"a", 125'000'000'000.0}}, MetricFormat::Text), HasSubstr("} 125000000000\n"));
  EXPECT_THAT(written({{"a", 0.25}}, MetricFormat::Text), HasSubstr("} 0.25\n"));
}

TEST(Metrics, TheFormatIsTheOneThatTheClientPrefers) {
  constexpr char kPrometheus[] =
      "application/openmetrics-text;version=1.0.0,application/openmetrics-text;version=0.0.1;q=0.75,"
      "text/plain;version=0.0.4;q=0.5,*/*;q=0.1";
  EXPECT_EQ(metricFormatFor(kPrometheus), MetricFormat::OpenMetrics);
  for (const char* const text : {"", "*/*", "text/plain", "application/openmetrics-text;q=0",
                                 "text/plain, application/openmetrics-text; q=0.5", "text/html"}) {
    EXPECT_EQ(metricFormatFor(text), MetricFormat::Text) << text;
  }
}

TEST(Metrics, TheMessageToThePluginsProcessIsToldApartFromOthers) {
  EXPECT_EQ(metricsAskedFor(metricsMessage(MetricFormat::OpenMetrics)), MetricFormat::OpenMetrics);
  EXPECT_EQ(metricsAskedFor(metricsMessage(MetricFormat::Text)), MetricFormat::Text);
  EXPECT_FALSE(metricsAskedFor("<?xml version=\"1.0\"?><CIM/>"));
}

TEST(LinkPartners, WhatIsNoTextOfThemIsLeftOut) {
  for (const char* const text :
       {"", "[]", "{}", R"({"ports":7,"teams":{}})", R"({"ports":[1],"teams":[1]})",
        R"({"ports":[{"name":"e0","speed":-1},{"name":"e0"}]})", R"({"teams":[{"name":7,"members":[null]}]})",
        R"({"teams":[{"name":"b0","members":"none"}]})"}) {
    const LinkPartners partners = readPartners(text);
    EXPECT_TRUE(partners.ports.empty() && partners.members.empty()) << text;
  }
  const LinkPartners partners =
      readPartners(R"({"ports":[{"speed":1000000,"fullDuplex":1}],)"
                   R"("teams":[{"name":"b0","ports":-1,"partner":1,)"
                   R"("members":[{"name":"e0","actorState":"61","partnerState":61}]}]})");
  ASSERT_EQ(partners.ports.size(), 1U);
  EXPECT_FALSE(partners.ports[0].fullDuplex);
  ASSERT_EQ(partners.teams.size(), 1U);
  EXPECT_EQ(partners.teams[0].device, "b0");
  EXPECT_EQ(partners.teams[0].partner, "");
  EXPECT_FALSE(partners.teams[0].ports || partners.teams[0].aggregator);
  ASSERT_EQ(partners.members.size(), 1U);
  EXPECT_EQ(partners.members[0].team, "b0");
  EXPECT_FALSE(partners.members[0].actorState);
  EXPECT_FALSE(partners.members[0].hasPartner() || partners.members[0].isSynchronized());
}

TEST(LinkPartners, AMemberIsInStepWhenBothEndsSaySoAndOneHasHeardTheOtherLately) {
  enum : std::uint64_t { kActive = 1, kSynchronized = 8, kDefaulted = 64, kExpired = 128 };
  const auto member = [](std::uint64_t actor, std::uint64_t partner) {
    return LacpMemberReading{.team = "b0",
                             .device = "e0",
                             .aggregator = {},
                             .actorState = actor | kActive,
                             .partnerState = partner | kActive};
  };
  EXPECT_EQ(member(kSynchronized, kSynchronized).isSynchronized(), true);
  EXPECT_EQ(member(kSynchronized, 0).isSynchronized(), false);
  EXPECT_EQ(member(0, kSynchronized).isSynchronized(), false);
  EXPECT_EQ(member(0, 0).hasPartner(), true);
  for (const std::uint64_t unheard : {kDefaulted, kExpired}) {
    EXPECT_EQ(member(kSynchronized | unheard, kSynchronized).hasPartner(), false);
    EXPECT_EQ(member(kSynchronized | unheard, kSynchronized).isSynchronized(), false);
  }
}

template <class Thing>
void addLines(std::vector<std::string>& lines, const MetricTable<Thing>& table) {
  std::string labels;
  for (const auto& row : table.identity)
    labels += std::string(labels.empty() ? "" : ", ") + "`" + row.label + "`";
  const auto add = [&](const MetricFamily& family, const std::string& its) {
    constexpr std::array kKinds = {"gauge", "counter", "info"};
    lines.push_back(std::string("| `") + family.name + "` | " +
                    kKinds[static_cast<std::size_t>(family.kind)] + " | " + family.unit + " | " + its +
                    " | " + family.help + " | " + family.source + " |");
  };
  if (table.info) {
    std::string all = labels;
    for (const auto& row : table.infoLabels) all += std::string(", `") + row.label + "`";
    add(*table.info, all);
  }
  for (const auto& row : table.numbers) add(row.family, labels);
}

TEST(Metrics, TheDocumentationListsEveryMetricAsItIs) {
  std::vector<std::string> lines;
  forEachMetricTable([&](const auto& table) { addLines(lines, table); });
  std::vector<std::string> documented;
  std::ifstream file(ZEB_METRICS_DOCUMENT);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("| `zeb_")) documented.push_back(line);
  }
  EXPECT_THAT(documented, testing::ElementsAreArray(lines));
}

}  // namespace
}  // namespace ZebManager
