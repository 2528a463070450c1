#include <spawn.h>
#include <sys/wait.h>

#include "Commands.h"
#include "DumpCounter.h"
#include "Manager.h"
#include "Times.h"
#include "metrics/Metrics.h"
#include "plugin/PluginNamespace.h"

namespace ZebBench {

using namespace ZebManager;

namespace {

std::string scrape(Manager& manager, Metrics& metrics) {
  const ProviderCalls calls = manager.provider().atOneMoment();
  PluginNamespace model(calls);
  return metrics.text(
      model, [&] { return readPartners(calls.linkPartners()); }, std::nullopt, MetricFormat::Text);
}

void listLinks() {
  std::vector<std::string> words = {"sh", "-c", "exec ip -j -s -d link >/dev/null"};
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t id = -1;
  int status = -1;
  if (posix_spawn(&id, "/bin/sh", nullptr, nullptr, arguments.data(), environ) != 0 ||
      waitpid(id, &status, 0) != id || status != 0)
    throw ManagerError("ip failed");
}

/// Milliseconds of the processor.
template <class Work>
double spent(int whose, Work work) {
  const double before = processorMilliseconds(whose);
  work();
  return processorMilliseconds(whose) - before;
}

}  // namespace

void measureScrapes(Arguments arguments, Figures& figures) {
  const int rounds = std::stoi(arguments[0]);
  Manager manager;
  manager.load();
  Metrics metrics;
  for (int i = 0; i < 3; ++i) scrape(manager, metrics);
  std::vector<double> again, anew, links, ratios;
  int dumps = 0;
  for (int i = 0; i < rounds; ++i) {
    links.push_back(spent(RUSAGE_CHILDREN, listLinks));
    const int before = dumpsAskedFor();
    again.push_back(spent(RUSAGE_SELF, [&] { scrape(manager, metrics); }));
    dumps += dumpsAskedFor() - before;
    ratios.push_back(again.back() / links.back());
    anew.push_back(spent(RUSAGE_SELF, [&] {
      Metrics first;
      scrape(manager, first);
    }));
  }
  figures.add("scrape_text", median(again));
  figures.add("scrape_text_ip", median(links));
  figures.add("scrape_text_ratio", median(ratios));
  figures.add("scrape_text_anew", median(anew));
  figures.add("scrape_text_dumps", static_cast<double>(dumps) / rounds);
  figures.add("ports", static_cast<double>(manager.names("ZEB_EthernetPort").items().size()));
}

}  // namespace ZebBench
