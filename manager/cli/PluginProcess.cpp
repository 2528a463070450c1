#include "cli/PluginProcess.h"

#include "cimxml/Answer.h"
#include "cimxml/EnumerationSteps.h"
#include "cimxml/Export.h"
#include "cli/Metrics.h"
#include "cli/Recording.h"
#include "cli/Session.h"
#include "cli/ShownInstances.h"
#include "isolation/ProviderProcess.h"
#include "plugin/PluginNamespace.h"

namespace ZebManager {
namespace {

class HostedPlugin : public HostedProvider {
 public:
  explicit HostedPlugin(const Options& options)
      : _options(options), _session(options, Session::Posts::AsConfigured), _namespace(_session.provider()) {}

  Broker& broker() override { return _session.broker(); }
  std::string perform(std::string_view message) override {
    if (message == kRecordingMessage) return recordingOf(_options);
    if (message == kPartnersMessage) return _session.provider().atOneMoment().linkPartners();
    if (const auto format = metricsAskedFor(message)) return metrics(*format);
    if (const auto question = shownAskedFor(message)) return shownInstances(_namespace, *question);
    return isStep(message) ? performStep(message, _namespace) : answer(message, _namespace);
  }
  std::string instanceElement(const Instance& indication) override {
    return ZebManager::instanceElement(indication);
  }

 private:
  std::string metrics(MetricFormat format) {
    const ProviderCalls calls = _session.provider().atOneMoment();
    PluginNamespace model(calls);
    const auto partners = [&] { return readPartners(calls.linkPartners()); };
    return _metrics.text(model, partners, readWorker(_session.runFolder()), format);
  }

  const Options& _options;
  Session _session;
  PluginNamespace _namespace;
  Metrics _metrics;
};

}  // namespace

int runPluginProcess(const Options& options) {
  return runProviderProcess(kProviderSocket, [&] { return std::make_unique<HostedPlugin>(options); });
}

}  // namespace ZebManager
