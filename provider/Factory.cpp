#include "provider/Factory.h"

#include <optional>

#include "common/AutostartDecorator.h"
#include "common/LoggedProvider.h"
#include "common/PerfmonDecorator.h"
#include "common/ZEBUtil.h"
#include "provider/Names.h"
#include "provider/ZEBEthernetPortProvider.h"
#include "provider/ZEB_AutoStartEthernetPort.h"

namespace ZEB {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiProvider;

namespace {

/// Made on first use, by one thread at a time, and gone with the library, after the provider.
std::optional<Logger> processLogger;

std::unique_ptr<CmpiProvider> createProvider(const CmpiBroker& broker, const Logger& logger) {
  return std::make_unique<ZEBEthernetPortProvider>(broker, logger);
}

std::unique_ptr<CmpiProvider> createPerfmon(const CmpiBroker& broker, const Logger& logger) {
  return std::make_unique<PerfmonDecorator>(broker, logger, createProvider);
}

std::unique_ptr<CmpiProvider> createAutostart(const CmpiBroker& broker, const Logger& logger) {
  auto autostart = std::make_unique<ZEB_AutoStartEthernetPort>(logger, std::string(kNameSpace.view()));
  return std::make_unique<AutostartDecorator>(broker, logger, std::move(autostart),
                                              ZEBUtil::PerfmonEnabled() ? createPerfmon : createProvider);
}

}  // namespace

std::unique_ptr<CmpiProvider> makeProvider(const CmpiBroker& broker, const std::string& name) {
  if (!CmpiName::equal(name, kProviderName.view())) return nullptr;
  if (!processLogger) processLogger.emplace(kProviderName.view());
  return std::make_unique<LoggedProvider>(broker, *processLogger, createAutostart);
}

}  // namespace ZEB
