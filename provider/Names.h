#pragma once

#include "cmpicpp/CmpiName.h"

namespace ZEB {

/// The only provider name that the library answers to; also the name of the provider's data store.
inline constexpr CmpiCpp::NameLiteral kProviderName = "ZEBEthernetPort";

/// The namespace of every path that the provider makes.
inline constexpr CmpiCpp::NameLiteral kNameSpace = "root/jxv";

}  // namespace ZEB
