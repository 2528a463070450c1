#pragma once

#include "FakeBroker.h"

namespace ZEB::test {

/// Tells the broker the values that the schema gives the properties of the plug-in's classes.
void declareSchemaDefaults(FakeBroker& broker);

}  // namespace ZEB::test
