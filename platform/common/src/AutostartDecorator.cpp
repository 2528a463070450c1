#include "common/AutostartDecorator.h"

#include <optional>
#include <random>
#include <utility>

#include "cmpicpp/AttachedThread.h"
#include "cmpicpp/ManagementInterfaces.h"
#include "common/ClassNames.h"
#include "common/Configuration.h"
#include "common/ZEBUtil.h"

namespace ZEB {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;

namespace {

std::chrono::milliseconds randomPart(std::chrono::milliseconds whole) {
  std::random_device device;
  return std::chrono::milliseconds(std::uniform_int_distribution<std::int64_t>(0, whole.count())(device));
}

std::chrono::seconds secondsOf(const CmpiCpp::CmpiInstance& instance, std::string_view property) {
  return std::chrono::seconds(instance.getProperty(property).asUnsigned());
}

}  // namespace

AutostartDecorator::AutostartDecorator(const CmpiBroker& broker, const Logger& logger,
                                       std::unique_ptr<CmpiManagedInstance> autostart,
                                       const ProviderCreator& creator)
    : ProviderDecorator(broker, logger, creator), _autostart(std::move(autostart)) {
  if (Configuration::current()->autostart) startTimer(broker);
}

AutostartDecorator::~AutostartDecorator() {
  ZEBUtil::setWorkerWaker(nullptr);
  ZEBUtil::setWorkerAlarm(nullptr);
  _timer.reset();
}

void AutostartDecorator::startTimer(const CmpiBroker& broker) {
  CMPIContext* prepared = broker.prepareAttachThread();
  if (!prepared) {
    logger().warn("the object manager attaches no threads: background work runs only when it calls for it");
    return;
  }
  const CmpiCpp::CmpiInstance instance = _autostart->makeInstance();
  const WorkerTimer::Timing timing{.firstAfter = randomPart(secondsOf(instance, "WorkerPollIntervalStagger")),
                                   .interval = secondsOf(instance, "WorkerPollInterval")};
  _timer.emplace(timing, [this, broker, prepared](const WorkerTimer::NextRun& next) {
    CmpiCpp::AttachedThread thread(broker, prepared);
    bool refused = false;
    while (next()) {
      if (ZEBUtil::stopRequested()) continue;
      const bool done = thread.run([this](const CmpiContext& context) { performWork(context); });
      if (!done && !std::exchange(refused, true)) logger().error("cannot attach the worker's thread");
    }
  });
  ZEBUtil::setWorkerWaker([this] { _timer->wake(); });
  ZEBUtil::setWorkerAlarm([this](WorkerTimer::Clock::time_point when) { _timer->wakeAt(when); });
}

void AutostartDecorator::performWork(const CmpiContext& context) {
  // A pass is a call like any other; none is let in while the provider is being unloaded.
  std::optional<CmpiCpp::ManagementInterfaces::Call> call;
  if (interfaces()) call.emplace(*interfaces());
  if (call && !call->provider()) return;
  try {
    CmpiCpp::CmpiMethodResult result;
    CmpiCpp::CmpiArgs out;
    dynamic_cast<CmpiCpp::CmpiMethodProvider&>(inner()).invokeMethod(
        result, context, _autostart->makeObjectPath(), CmpiCpp::CmpiName(kPerformWork), {}, out);
  } catch (const std::exception& failure) {
    logger().error("background work failed: %s", failure.what());
  }
}

}  // namespace ZEB
