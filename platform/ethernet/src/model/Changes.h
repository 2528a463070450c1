#pragma once

#include <string>
#include <vector>

#include "model/Model.h"

/// What differs between two models. A null model is one without anything.
namespace ZEB::ethernet {

/// Adapters or ports came, went, moved or were renamed.
bool adaptersDiffer(const Model* before, const Model& after);

/// What hangs on the ports that both have: addresses in use, gateways, VLANs.
bool portLayersDiffer(const Model* before, const Model& after);

/// Names of `after` that `before` has not, in the order of `after`.
std::vector<std::string> teamNamesAdded(const Model* before, const Model* after);

/// What hangs on the teams that both have: members, addresses in use, gateways, VLANs.
bool teamLayersDiffer(const Model* before, const Model& after);

/// A port that both have changed its status or its link.
bool portTransition(const Model& before, const Model& after);

/// A team that both have changed its status or its members, or a member its role, status or activity.
bool teamTransition(const Model& before, const Model& after);

}  // namespace ZEB::ethernet
