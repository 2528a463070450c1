#include "cli/Places.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "schema/Caseless.h"
#include "tree/Links.h"
#include "tree/TreeParts.h"

namespace ZebManager {
namespace {

/// Letters and digits alone, so that "PCI slot 3" is "pcislot3" and an address is its digits.
std::string bare(std::string_view text) {
  std::string kept;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) kept += foldCase(c);
  }
  return kept;
}

bool isAddress(const std::string& word) {
  constexpr std::size_t kDigits = 12;
  return word.size() == kDigits &&
         std::ranges::all_of(word, [](unsigned char c) { return std::isxdigit(c); });
}

std::vector<std::string> carriersOf(Namespace& model, const std::string& address) {
  std::unordered_map<std::string, std::string> endpoints;
  forEachInstance(model, "ZEB_EthernetLANEndpoint", {"MACAddress", "VLANId", "VLANName"},
                  [&](const PropertyView& view) {
                    if (!isVlan(view)) endpoints[view.path()] = bare(view.text("MACAddress"));
                  });
  std::vector<std::string> found;
  for (const auto& [className, toEndpoint] :
       {std::pair("ZEB_EthernetPort", "ZEB_EthernetPortToLANEndpoint"),
        std::pair("ZEB_EthernetTeam", "ZEB_EthernetTeamToLANEndpoint")}) {
    const Links links = readLinks(model, toEndpoint, "Antecedent", "Dependent");
    forEachInstance(model, className, {"PermanentAddress"}, [&](const PropertyView& view) {
      std::string own = bare(view.text("PermanentAddress"));
      if (own.empty()) {
        if (const std::string* const current = firstOf(links, view.path(), endpoints)) own = *current;
      }
      if (own == address) found.push_back(view.path());
    });
  }
  return found;
}

std::vector<std::string> cardsIn(Namespace& model, const std::string& wanted) {
  std::vector<std::string> found;
  for (const TreeCard& card : readCards(model)) {
    const std::string place = bare(card.location);
    const bool slot = wanted.starts_with("slot") && place.ends_with(wanted);
    if (!place.empty() && (place == wanted || slot)) found.push_back(card.path);
  }
  return found;
}

}  // namespace

std::vector<std::string> pathsAt(Namespace& model, const std::string& word) {
  if (!model.repository().find("ZEB_EthernetPort")) return {};
  const std::string wanted = bare(word);
  return isAddress(wanted) ? carriersOf(model, wanted) : cardsIn(model, wanted);
}

}  // namespace ZebManager
