#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Scenario.h"

/// What scenarios are put together of.
namespace ZEB::guest {

using Action = std::function<void(Guest&)>;
using Check = std::function<void(ServedModel&)>;

inline constexpr int kOk = 2, kDegraded = 3, kError = 6, kDormant = 15;
inline constexpr auto kLinkUp = "link up, 1000 Mbit/s full duplex";
inline constexpr auto kNoLink = "no link";
inline constexpr auto kSwitchedOff = "administratively down";

Action runs(std::string script);
Action pulls(std::string card);
Action putsBack(std::string card);
Check port(std::string card, int status);
/// A new process asks, so that a team that is degraded from its first look stays degraded.
Check team(int status);
Check number(std::string className, std::size_t count);
/// In the order in which they are served.
Check addresses(std::vector<std::string> wanted);
std::string bondOf(const std::string& mode, const std::vector<std::string>& members);
/// The first is active.
std::string backupOf(const std::vector<std::string>& members);
ExpectedAlert memberRole(const std::string& member, const std::string& from, const std::string& to,
                         const std::string& comment);
ExpectedAlert memberStatus(const std::string& member, const std::string& from, const std::string& to,
                           const std::string& comment);
ExpectedAlert joined(const std::string& member, const std::string& comment);
ExpectedAlert dropped(const std::string& member, const std::string& comment);
ExpectedAlert activeCount(int from, int to, const std::string& comment);
/// An alert of the team whose text has nothing but the team's name in it.
ExpectedAlert ofTeam(int event, const std::string& comment);

}  // namespace ZEB::guest
