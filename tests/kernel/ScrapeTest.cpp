// What the kernel is asked for metrics, of ports that are veth interfaces.
#include <gmock/gmock.h>

#include <cstdlib>
#include <thread>

#include "DumpCounter.h"
#include "Namespace.h"
#include "metrics/Metrics.h"
#include "plugin/PluginLibrary.h"
#include "plugin/PluginNamespace.h"
#include "posix/TemporaryFolder.h"

namespace ZEB::test {
namespace {

using namespace ZebManager;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Remembers which classes it is asked for.
class Asked : public PluginNamespace {
 public:
  using PluginNamespace::PluginNamespace;

  Reply enumerateInstances(std::string_view className, PropertyList properties) override {
    classes.emplace_back(className);
    return PluginNamespace::enumerateInstances(className, properties);
  }
  Reply enumerateInstanceNames(std::string_view className) override {
    classes.emplace_back(className);
    return PluginNamespace::enumerateInstanceNames(className);
  }

  std::vector<std::string> classes;
};

/// The plug-in in the embedded object manager, of which metrics are made as a server makes them.
class Scraped {
 public:
  Scraped() {
    for (const auto& [name, value] : {std::pair("ZEB_INCLUDE_VIRTUAL", "1"),
                                      {"ZEB_CONFIG", "/nonexistent"},
                                      {"ZEB_AUTOSTART", "0"},
                                      {"ZEB_RUN_DIR", "none"},
                                      {"ZEB_LOG_LEVEL", "error"}})
      setenv(name, value, 1);
    setenv("ZEB_STORE_DIR", _folder.path().c_str(), 1);
    _plugin.emplace(_broker, ZEB_PLUGIN);
  }

  std::string scrape() { return scrapeInto(_metrics); }
  /// By who has scraped nothing before.
  std::string scrapeAnew() {
    Metrics first;
    return scrapeInto(first);
  }
  /// Classes that the last scrape has asked for.
  const std::vector<std::string>& asked() const { return _asked; }

  /// Dumps that a scrape has asked for.
  int dumps() {
    const int before = ZebBench::dumpsAskedFor();
    scrape();
    return ZebBench::dumpsAskedFor() - before;
  }

 private:
  std::string scrapeInto(Metrics& metrics) {
    const ProviderCalls calls = _broker.provider().atOneMoment();
    Asked model(calls);
    const auto partners = [&] { return readPartners(calls.linkPartners()); };
    std::string text = metrics.text(model, partners, std::nullopt, MetricFormat::Text);
    _asked = std::move(model.classes);
    return text;
  }

  const TemporaryFolder _folder{"zeb-scrape"};
  const ClassRepository _repository = ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  Broker _broker{_repository};
  std::optional<PluginLibrary> _plugin;
  Metrics _metrics;
  std::vector<std::string> _asked;
};

/// Nothing is announced any more, which takes the kernel a moment after links have come up.
void comeToRest(Scraped& scraped) {
  EXPECT_TRUE(eventually([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    return scraped.dumps() == 1;
  }));
}

TEST(Scrape, AsksForCountersOnceWhileNothingIsAnnounced) {
  IN_NAMESPACE([] {
    makePairs(10);
    Scraped scraped;
    comeToRest(scraped);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(scraped.dumps(), 1);
    EXPECT_THAT(scraped.asked(), ElementsAre("ZEB_EthernetStatistics"));
    // The kernel itself sends now and then what it announces an address with.
    EXPECT_TRUE(eventually([&] { return scraped.scrape() == scraped.scrapeAnew(); }))
        << scraped.scrape() << scraped.scrapeAnew();
  });
}

/// Links, addresses, routes of two families, link modes: by the thread that hears what is announced, and by
/// the scrape where that thread has not, however many classes there are.
TEST(Scrape, AsksForEverythingOnceWhenSomethingWas) {
  constexpr int kDumpsOfEverything = 5;
  IN_NAMESPACE([] {
    makePairs(10);
    Scraped scraped;
    comeToRest(scraped);
    ip("link set a3 mtu 1400");
    EXPECT_LE(scraped.dumps(), 2 * kDumpsOfEverything);
    EXPECT_THAT(scraped.scrape(), HasSubstr("zeb_port_mtu_bytes{device=\"a3\"} 1400\n"));
  });
}

TEST(Scrape, LabelsAreThoseOfTheMoment) {
  IN_NAMESPACE([] {
    makePairs(3);
    Scraped scraped;
    comeToRest(scraped);
    EXPECT_THAT(scraped.scrape(), HasSubstr("{device=\"a1\""));
    ip("link set a1 down");
    ip("link set a1 name c1");
    const std::string text = scraped.scrape();
    EXPECT_THAT(text, Not(HasSubstr("{device=\"a1\"")));
    EXPECT_THAT(text, HasSubstr("zeb_port_info{device=\"c1\""));
    EXPECT_THAT(text, HasSubstr("zeb_port_receive_bytes_total{device=\"c1\"} "));
  });
}

TEST(Scrape, CountersAreThoseOfTheMoment) {
  IN_NAMESPACE([] {
    makePairs(1);
    Scraped scraped;
    comeToRest(scraped);
    const auto packets = [&] {
      const std::string text = scraped.scrape();
      constexpr std::string_view kSeries = "\nzeb_port_transmit_packets_total{device=\"a0\"} ";
      return std::stoull(text.substr(text.find(kSeries) + kSeries.size()));
    };
    const auto before = packets();
    ip("address add 192.0.2.1/24 dev a0");
    ip("neigh add 192.0.2.2 lladdr 02:00:00:00:00:02 dev a0");
    comeToRest(scraped);
    ASSERT_EQ(std::system("bash -c 'for i in 1 2 3; do echo >/dev/udp/192.0.2.2/9; done'"), 0);
    EXPECT_GE(packets(), before + 3);
  });
}

}  // namespace
}  // namespace ZEB::test
