// Whether the kernel can be asked about ethtool's settings over netlink.
#pragma once

namespace ZebManager {

enum class EthtoolFamily { There, Missing, Unknown };

/// Asks through a connected socket of generic netlink.
EthtoolFamily askForEthtool(int socket);
/// Asks the running kernel.
EthtoolFamily ethtoolOfKernel();

}  // namespace ZebManager
