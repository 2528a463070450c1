#pragma once

#include <memory>
#include <mutex>

namespace ZEB::ethernet {

class Inventory;

/// The mutex that guards the handle at this address. Many handles share a few mutexes, which are held for no
/// longer than a pointer is copied.
std::mutex& handleMutex(const void* handle);

/// A record's hold on its facts: a shared, immutable set and the inventory that a newer set can be had from.
/// Reading beside `replace` gives the old set or the new one.
template <class Facts>
class FactsHandle {
 public:
  FactsHandle() = default;
  FactsHandle(std::shared_ptr<const Facts> facts, std::shared_ptr<Inventory> origin)
      : _facts(std::move(facts)), _origin(std::move(origin)) {}
  FactsHandle(const FactsHandle& other) : _origin(other._origin) { _facts = other.facts(); }
  FactsHandle& operator=(const FactsHandle& other) {
    if (this == &other) return *this;
    replace(other.facts());
    _origin = other._origin;
    return *this;
  }

  /// Moving takes the facts away without asking whether anyone is reading them.
  FactsHandle(FactsHandle&& other) noexcept
      : _facts(std::move(other._facts)), _origin(std::move(other._origin)) {}
  FactsHandle& operator=(FactsHandle&& other) noexcept {
    if (this == &other) return *this;
    replace(std::move(other._facts));
    _origin = std::move(other._origin);
    return *this;
  }
  ~FactsHandle() = default;

  /// One that keeps these facts: with no inventory to have newer ones from, nobody replaces them.
  FactsHandle still() const { return {facts(), nullptr}; }

  /// Null for a record that was never filled.
  std::shared_ptr<const Facts> facts() const {
    if (!_origin) return _facts;
    const std::scoped_lock lock(handleMutex(this));
    return _facts;
  }
  void replace(std::shared_ptr<const Facts> newer) {
    const std::scoped_lock lock(handleMutex(this));
    _facts.swap(newer);
  }
  const std::shared_ptr<Inventory>& origin() const { return _origin; }

 private:
  std::shared_ptr<const Facts> _facts;
  std::shared_ptr<Inventory> _origin;
};

}  // namespace ZEB::ethernet
