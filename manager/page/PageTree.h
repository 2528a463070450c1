// The tree of a server as pages get it: piece by piece, so that only what changed is sent again.
#pragma once

#include <string>
#include <vector>

#include "metrics/LinkPartners.h"
#include "tree/Tree.h"

namespace ZebManager {

/// A card or a team: one line of JSON by its path.
struct PagePart {
  std::string path;
  std::string json;
  friend bool operator==(const PagePart&, const PagePart&) = default;
};

struct PageTree {
  std::string host;
  std::vector<PagePart> cards, teams;
  std::vector<std::string> ports;  ///< paths, in the order in which cards have them

  /// One line, the same document that `jsonOfTree` makes. Besides, ports have a `partner` with what the other
  /// end of their cable offers, and teams and members a `lacp` with who answers there, where that is known.
  std::string json() const;
  /// Whether there are the same cards, ports and teams in the same order.
  bool hasShapeOf(const PageTree& other) const;
  /// The cards and teams that are others than before, as a document like the whole tree; empty when there are
  /// none.
  std::string changesSince(const PageTree& before) const;
};

PageTree pageTree(const Tree& tree, const LinkPartners& partners);

}  // namespace ZebManager
