#include "server/SharedBound.h"

#include <algorithm>

namespace ZebManager {
namespace {

/// Parts of the whole that a kind may take, and each of the kind.
struct PartRow {
  std::size_t ofAll;
  std::size_t ofEach;
};

constexpr std::array kParts = {PartRow{2, 2}, PartRow{4, 8}, PartRow{1, 4}};  // by kind

}  // namespace

bool SharedBound::take(const Party& party, std::size_t amount) {
  const auto kind = static_cast<std::size_t>(party.kind);
  const std::lock_guard lock(_mutex);
  const auto found = _ofParty.find(party);
  const std::size_t own = found == _ofParty.end() ? 0 : found->second;
  const auto fits = [&](std::size_t taken, std::size_t part) {
    return taken + amount <= std::max<std::size_t>(_most / part, 1);
  };
  if (!fits(_all, 1) || !fits(_ofKind[kind], kParts[kind].ofAll) || !fits(own, kParts[kind].ofEach))
    return false;
  _all += amount;
  _ofKind[kind] += amount;
  _ofParty[party] = own + amount;
  return true;
}

bool SharedBound::isFree() const {
  const std::lock_guard lock(_mutex);
  return _all == 0;
}

void SharedBound::giveBack(const Party& party, std::size_t amount) {
  if (amount == 0) return;
  const std::lock_guard lock(_mutex);
  _all -= amount;
  _ofKind[static_cast<std::size_t>(party.kind)] -= amount;
  const auto found = _ofParty.find(party);
  if ((found->second -= amount) == 0) _ofParty.erase(found);
}

}  // namespace ZebManager
