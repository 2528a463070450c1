#include <bit>
#include <charconv>

#include "tree/Links.h"
#include "tree/TreeParts.h"

namespace ZebManager {
namespace {

/// Nothing for a mask with holes in it, or that is none.
std::optional<std::uint64_t> prefixOfMask(std::string_view mask) {
  std::uint32_t bits = 0;
  const char* at = mask.data();
  const char* const end = at + mask.size();
  for (int i = 0; i < 4; ++i) {
    std::uint8_t byte = 0;
    const auto [next, error] = std::from_chars(at, end, byte);
    if (error != std::errc() || (i < 3 ? next == end || *next != '.' : next != end)) return std::nullopt;
    bits = bits << 8 | byte;
    at = next + (i < 3 ? 1 : 0);
  }
  const int ones = std::countl_one(bits);
  if (ones < 32 && bits << ones != 0) return std::nullopt;
  return static_cast<std::uint64_t>(ones);
}

using Addresses = std::unordered_map<std::string, TreeAddress>;

Addresses readAddresses(Namespace& model, TreeAddresses which) {
  std::unordered_map<std::string, std::string> gateways;
  const auto takeGateway = [&](const PropertyView& view) {
    // The address stands before its mask or prefix length.
    const std::string info = view.text("AccessInfo");
    gateways[view.path()] = info.substr(0, info.find_first_of(" /"));
  };
  forEachInstance(model, "ZEB_EthernetRemoteServiceAccessPoint", {"AccessInfo"}, takeGateway);
  if (gateways.empty() && which == TreeAddresses::WithGateways) return {};
  const Links toGateway = readLinksIfAny(gateways, model, "ZEB_EthernetRemoteAccessAvailableToIPEndpoint",
                                         "Dependent", "Antecedent");
  Addresses addresses;
  const auto take = [&](const PropertyView& view) {
    const std::string path = view.path();
    const auto* const gateway = firstOf(toGateway, path, gateways);
    if (!gateway && which == TreeAddresses::WithGateways) return;
    TreeAddress address;
    address.address = view.text("IPv4Address");
    address.mask = view.text("SubnetMask");
    address.prefixLength = prefixOfMask(address.mask);
    if (address.address.empty()) {
      address.address = view.text("IPv6Address");
      address.prefixLength = view.number("PrefixLength");
    }
    if (view.number("AddressOrigin").value_or(0) != 0) address.origin = view.meaning("AddressOrigin");
    if (gateway) address.gateway = *gateway;
    // An address that went since the model was built is an endpoint without one.
    if (!address.address.empty()) addresses.emplace(path, std::move(address));
  };
  forEachInstance(model, "ZEB_IPProtocolEndpoint",
                  {"IPv4Address", "SubnetMask", "IPv6Address", "PrefixLength", "AddressOrigin"}, take);
  return addresses;
}

}  // namespace

/// The endpoint is named after its number where the system's name is not known.
std::string deviceName(const PropertyView& endpoint) {
  const std::string name = endpoint.text("Description");
  constexpr std::string_view kNameless = "LAN Endpoint ";
  return name.starts_with(kNameless) ? std::string() : name;
}

bool isVlan(const PropertyView& endpoint) {
  return endpoint.number("VLANId") || !endpoint.text("VLANName").empty();
}

std::string withColons(const std::string& address) {
  std::string shown;
  for (std::size_t i = 0; i < address.size(); ++i) {
    if (i > 0 && i % 2 == 0) shown += ':';
    shown += address[i];
  }
  return shown;
}

TreeStatus statusOf(const PropertyView& view, const char* numbers, const char* words) {
  return {view.number(numbers), words ? view.text(words) : view.meaning(numbers)};
}

std::unordered_map<std::string, TreeEndpoint> readEndpoints(Namespace& model, TreeAddresses which) {
  const auto addresses = readAddresses(model, which);
  const Links toAddress =
      readLinksIfAny(addresses, model, "ZEB_IPBindsToEthernetLANEndpoint", "Antecedent", "Dependent");
  std::unordered_map<std::string, TreeEndpoint> endpoints;
  const auto take = [&](const PropertyView& view) {
    const std::string path = view.path();
    TreeEndpoint& endpoint = endpoints[path];
    endpoint.isVlan = isVlan(view);
    endpoint.interface.path = path;
    endpoint.interface.name = deviceName(view);
    endpoint.interface.macAddress = withColons(view.text("MACAddress"));
    endpoint.interface.status = statusOf(view, "OperationalStatus", "StatusDescriptions");
    endpoint.interface.id = view.number("VLANId").value_or(0);
    for (const std::string& end : follow(toAddress, path)) {
      if (const auto* address = findByPath(addresses, end)) endpoint.interface.addresses.push_back(*address);
    }
  };
  forEachInstance(
      model, "ZEB_EthernetLANEndpoint",
      {"Description", "VLANId", "VLANName", "MACAddress", "OperationalStatus", "StatusDescriptions"}, take);
  return endpoints;
}

}  // namespace ZebManager
