// What a tree is put together from. Texts and numbers are those that the plug-in serves.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "tree/Tree.h"

namespace ZebManager {

class PropertyView;

/// An endpoint of a port or team: its own, or that of one of its VLANs.
struct TreeEndpoint {
  TreeVlan interface;
  bool isVlan = false;
};

/// LAN endpoints with their addresses and gateways, by path.
std::unordered_map<std::string, TreeEndpoint> readEndpoints(Namespace& model, TreeAddresses which);
/// Cards without their ports, in the order in which they are served.
std::vector<TreeCard> readCards(Namespace& model);

/// The operating system's name of what an endpoint stands for; empty when it is not known.
std::string deviceName(const PropertyView& endpoint);
/// Whether an endpoint is that of a VLAN.
bool isVlan(const PropertyView& endpoint);

/// The status whose number and words two properties have; without a property for the words, the schema's.
TreeStatus statusOf(const PropertyView& view, const char* numbers, const char* words = nullptr);
/// "001b21000001" as "00:1b:21:00:00:01".
std::string withColons(const std::string& address);

}  // namespace ZebManager
