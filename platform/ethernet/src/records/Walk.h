#pragma once

#include <cstddef>
#include <memory>
#include <mutex>

#include "records/Inventory.h"

namespace ZEB::ethernet {

/// One data source's walk over the answer that it began with.
class Walk {
 public:
  enum class Result : std::uint8_t { Entry, End, Failure };

  Walk(std::shared_ptr<Inventory> inventory, Inventory::Kind kind)
      : _inventory(std::move(inventory)), _kind(kind) {}

  /// Begins anew and hands the first of `entries`, a member of `Model`, to `deliver`.
  template <class Entries, class Deliver>
  Result first(bool fresh, Entries Model::*entries, Deliver deliver) {
    const std::scoped_lock lock(_mutex);
    _inventory->beginDelivery(_kind);
    _model = fresh ? _inventory->fresh() : _inventory->current();
    _next = 0;
    return step(entries, deliver);
  }

  template <class Entries, class Deliver>
  Result next(Entries Model::*entries, Deliver deliver) {
    const std::scoped_lock lock(_mutex);
    return step(entries, deliver);
  }

 private:
  template <class Entries, class Deliver>
  Result step(Entries Model::*entries, Deliver deliver) {
    if (!_model) return Result::Failure;
    const Entries& all = (*_model).*entries;
    if (_next == all.size()) {
      _inventory->endDelivery(_kind, _model);
      return Result::End;
    }
    deliver(all[_next++]);
    return Result::Entry;
  }

  std::mutex _mutex;
  std::shared_ptr<Inventory> _inventory;
  Inventory::Kind _kind;
  std::shared_ptr<const Model> _model;
  std::size_t _next = 0;
};

}  // namespace ZEB::ethernet
