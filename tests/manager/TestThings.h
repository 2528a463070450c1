#pragma once

#include <string>

#include "cmpi/cmpi.h"

// What the plug-in for tests serves.

namespace ZebTestPlugin {

/// Set by the first factory function that is called.
extern const CMPIBroker* theBroker;

CMPIValue stringValue(const char* text);
CMPIObjectPath* thingPath(const char* className, const char* name);
/// An instance with a value of every type.
CMPIInstance* thing(const char* className, const char* name);
CMPIObjectPath* linkPath();
CMPIInstance* link();

}  // namespace ZebTestPlugin
