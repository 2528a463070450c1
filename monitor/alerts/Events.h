#pragma once

namespace ZEB {

// The events that raise alerts. Ports and teams share the first three and the last two of theirs.
inline constexpr int kFailed = 1;
inline constexpr int kConnectivityLost = 2;
inline constexpr int kConnectivityRestored = 3;
inline constexpr int kRedundancyDecreased = 4;
inline constexpr int kRedundancyLost = 5;
inline constexpr int kRedundancyIncreased = 6;
inline constexpr int kMemberAdded = 7;
inline constexpr int kMemberDropped = 8;
inline constexpr int kMemberRoleChanged = 9;
inline constexpr int kMemberStatusChanged = 10;
inline constexpr int kInterfaceAvailable = 11;
inline constexpr int kInterfaceNoLongerAvailable = 12;
inline constexpr int kActiveMembersChanged = 13;
inline constexpr int kRedundancyRestored = 15;
inline constexpr int kTeamFailed = 16;
inline constexpr int kActivated = 20;
inline constexpr int kDeactivated = 21;
inline constexpr int kHeartbeat = 100;
inline constexpr int kCollectionStateChanged = 201;

// Sub-categories of events.
inline constexpr int kProviderSubCategory = 0;
inline constexpr int kPortSubCategory = 11;
inline constexpr int kTeamSubCategory = 12;

}  // namespace ZEB
