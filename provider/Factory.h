#pragma once

#include <memory>
#include <string>

#include "cmpicpp/CmpiProvider.h"

namespace ZEB {

/// The provider of that name in its decorators: logged, autostarted, and timed where performance monitoring
/// is on. Null for any name but the one that the library knows.
std::unique_ptr<CmpiCpp::CmpiProvider> makeProvider(const CmpiCpp::CmpiBroker& broker,
                                                    const std::string& name);

}  // namespace ZEB
