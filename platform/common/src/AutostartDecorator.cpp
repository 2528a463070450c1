#include "common/AutostartDecorator.h"

namespace ZEB {

AutostartDecorator::AutostartDecorator(const CmpiCpp::CmpiBroker& broker, const Logger& logger,
                                       std::unique_ptr<CmpiManagedInstance> autostart,
                                       const ProviderCreator& creator)
    : ProviderDecorator(broker, logger, creator), _autostart(std::move(autostart)) {}

}  // namespace ZEB
