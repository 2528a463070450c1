#pragma once

#include "cmpi/cmpi.h"

namespace ZEB::test {

/// What object managers differ in, as a provider meets it.
struct Habits {
  const char* profile = "embedded";
  CMPIVersion brokerVersion = CMPIVersion200;
  CMPIVersion tableVersion = CMPIVersion200;
  /// The broker's tables end with the last slot of version 2.0; what lies behind cannot be read.
  bool tablesEndEarly = false;
  /// Marks and releases. Without, what an attached thread makes is freed when it detaches.
  bool hasMemoryTable = true;
  /// An instance that is made begins with the keys of its path and the defaults of its class.
  bool prefillsInstances = false;
  /// An instance takes a property list to keep to.
  bool filtersInstances = true;
  /// An instance in a change without a property list gets the defaults of what it does not hold.
  bool completesChanges = false;
  /// A change without a property list gets one of all names of its instance.
  bool listsChanges = false;
  /// Principal and role of a call are strings without characters.
  bool hasNullTexts = false;
  /// Takes indications between enabling and disabling them, and refuses them before and after.
  bool deliversWhileEnabledOnly = false;
  /// An operation that was itself reached by a call up and calls up again waits for ever.
  bool callsUpOneLevel = false;
  /// Class paths count keys that they do not have.
  bool countsKeysOfClassPaths = false;
};

/// `zebcim`: one process, nothing made up.
inline constexpr Habits kEmbeddedHabits{};

/// A process for each group of providers.
inline constexpr Habits kGroupHabits{.profile = "group",
                                     .brokerVersion = 0,
                                     .tableVersion = 1,
                                     .prefillsInstances = true,
                                     .completesChanges = true,
                                     .hasNullTexts = true};

/// An agent for each module.
inline constexpr Habits kAgentHabits{.profile = "agent",
                                     .tablesEndEarly = true,
                                     .hasMemoryTable = false,
                                     .prefillsInstances = true,
                                     .completesChanges = true,
                                     .listsChanges = true,
                                     .deliversWhileEnabledOnly = true,
                                     .callsUpOneLevel = true,
                                     .countsKeysOfClassPaths = true};

/// Those of the profile that the environment variable ZEB_TEST_MANAGER names; embedded without it.
Habits habitsOfEnvironment();

}  // namespace ZEB::test
