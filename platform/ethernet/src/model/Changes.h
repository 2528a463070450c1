#pragma once

#include <string>
#include <vector>

#include "model/Model.h"

/// What differs between two models. A null model is one without anything. An interface is its number and its
/// name: another number under the same name is another interface.
namespace ZEB::ethernet {

/// Adapters or ports came, went, moved or were renamed, or what hangs on them differs: hardware, addresses in
/// use, gateways, VLANs.
bool adaptersDiffer(const Model* before, const Model& after);

/// The names of the teams of `after` that `before` has not, in the order of `after`.
std::vector<std::string> teamsAdded(const Model* before, const Model* after);

/// What hangs on the teams that both have: members with what is shown of them, addresses in use, gateways,
/// VLANs.
bool teamsDiffer(const Model* before, const Model& after);

/// Both say the same of everything but counters and when they were read.
bool sameButCounters(const Model& before, const Model& after);

/// A port that both have changed its status or its link.
bool portTransition(const Model& before, const Model& after);

/// A team that both have changed its status or its members, or a member its role, status or activity.
bool teamTransition(const Model& before, const Model& after);

}  // namespace ZEB::ethernet
