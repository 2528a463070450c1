// What is called by where it is, or by its MAC address.
#pragma once

#include <string>
#include <vector>

#include "broker/Namespace.h"

namespace ZebManager {

/// Paths of ports and teams with that MAC address, however it is written, or of the cards in that slot
/// ("slot3", "PCI Express slot 3"). Throws ManagerError.
std::vector<std::string> pathsAt(Namespace& model, const std::string& word);

}  // namespace ZebManager
