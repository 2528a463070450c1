#include "tree/Links.h"
#include "tree/TreeParts.h"

namespace ZebManager {
namespace {

struct Software {
  std::string name;
  std::string version;
};

std::unordered_map<std::string, Software> readSoftware(Namespace& model, const char* className) {
  std::unordered_map<std::string, Software> found;
  forEachInstance(model, className, {"Name", "VersionString"}, [&](const PropertyView& view) {
    found[view.path()] = {view.text("Name"), view.text("VersionString")};
  });
  return found;
}

/// "Controller (2-port): Gigabit Adapter" without what the tree shows anyway.
std::string productOf(const std::string& caption) {
  constexpr std::string_view kEnd = "): ";
  const std::size_t end = caption.find(kEnd);
  return end == std::string::npos ? caption : caption.substr(end + kEnd.size());
}

/// Cards as far as their packages tell, by the package's path.
std::unordered_map<std::string, TreeCard> readPackages(Namespace& model) {
  std::unordered_map<std::string, TreeCard> packages;
  std::unordered_map<std::string, std::string> locations;
  forEachInstance(
      model, "ZEB_EthernetControllerLocation", {"ElementLocationTag"},
      [&](const PropertyView& view) { locations[view.path()] = view.text("ElementLocationTag"); });
  const Links toLocation =
      readLinksIfAny(locations, model, "ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation",
                     "Element", "PhysicalLocation");
  forEachInstance(model, "ZEB_EthernetPortControllerPhysicalPackage", {"Manufacturer", "Caption"},
                  [&](const PropertyView& view) {
                    const std::string path = view.path();
                    TreeCard& package = packages[path];
                    package.manufacturer = view.text("Manufacturer");
                    package.product = productOf(view.text("Caption"));
                    if (const auto* location = firstOf(toLocation, path, locations))
                      package.location = *location;
                  });
  return packages;
}

}  // namespace

std::vector<TreeCard> readCards(Namespace& model) {
  const auto packages = readPackages(model);
  const auto drivers = readSoftware(model, "ZEB_EthernetPortControllerSoftwareIdentity");
  const auto firmwares = readSoftware(model, "ZEB_EthernetPortControllerFirmwareIdentity");
  const auto linksTo = [&](const auto& ends, const char* association) {
    return readLinksIfAny(ends, model, association, "Dependent", "Antecedent");
  };
  const Links toDriver = linksTo(drivers, "ZEB_EthernetElementSoftwareIdentity");
  const Links toFirmware = linksTo(firmwares, "ZEB_EthernetElementFirmwareIdentity");
  const Links toPackage = linksTo(packages, "ZEB_EthernetControllerPhysicalPackageEthernetController");
  std::vector<TreeCard> cards;
  const auto take = [&](const PropertyView& view) {
    const std::string path = view.path();
    const TreeCard* const package = firstOf(toPackage, path, packages);
    TreeCard card = package ? *package : TreeCard();
    card.path = path;
    if (card.product.empty()) card.product = view.text("ElementName");
    card.status = statusOf(view, "OperationalStatus");
    if (const auto* driver = firstOf(toDriver, path, drivers)) {
      card.driver = driver->name;
      card.driverVersion = driver->version;
    }
    if (const auto* firmware = firstOf(toFirmware, path, firmwares)) card.firmware = firmware->version;
    cards.push_back(std::move(card));
  };
  forEachInstance(model, "ZEB_EthernetPortController", {"ElementName", "OperationalStatus"}, take);
  return cards;
}

}  // namespace ZebManager
