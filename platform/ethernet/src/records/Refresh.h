#pragma once

#include "ethernet/FactsHandle.h"
#include "records/Answer.h"
#include "records/Inventory.h"

namespace ZEB::ethernet {

/// What the `refresh` of every record does. An interface that is gone leaves empty facts behind, which know
/// nothing but the number to ask again by, and fail every getter.
template <class Facts>
int refreshHandle(FactsHandle<Facts>& handle, RefreshPart part) {
  const auto before = handle.facts();
  if (!before || !handle.origin()) return kNotKnown;
  auto newer = handle.origin()->newerFacts(*before, part);
  if (!newer) return kNotKnown;
  const bool there = *newer != nullptr;
  if (!there) {
    auto gone = std::make_shared<Facts>();
    gone->link.index = before->link.index;
    *newer = std::move(gone);
  }
  handle.replace(std::move(*newer));
  return there ? kKnown : kNotKnown;
}

}  // namespace ZEB::ethernet
