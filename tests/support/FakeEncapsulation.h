#pragma once

#include "cmpi/cmpi.h"

namespace ZEB::test {

/// Sets the slots that make values.
void fillFactories(CMPIBrokerEncFT& table);

}  // namespace ZEB::test
