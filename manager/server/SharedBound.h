// Bounds that clients share.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>

namespace ZebManager {

/// Whose share something counts towards.
struct Party {
  /// Without credentials; with such as have not been judged; signed in.
  enum class Kind { Nobody, Stranger, User };
  Kind kind = Kind::Nobody;
  std::string name;  ///< of the user; of the client when there is none

  auto operator<=>(const Party&) const = default;
};

/// An amount of which all may take: the nameless half, strangers a quarter and each of them an eighth, each
/// user a quarter. So a quarter at least is left to those who signed in. Safe from any thread.
class SharedBound {
 public:
  explicit SharedBound(std::size_t most) : _most(most) {}

  /// False, and nothing is taken, beyond a bound.
  bool take(const Party& party, std::size_t amount);
  void giveBack(const Party& party, std::size_t amount);
  bool isFree() const;

 private:
  const std::size_t _most;
  mutable std::mutex _mutex;
  std::size_t _all = 0;
  std::array<std::size_t, 3> _ofKind{};
  std::map<Party, std::size_t> _ofParty;
};

/// What somebody has taken of a bound, until it goes.
class Share {
 public:
  Share(SharedBound& bound, Party party) : _bound(bound), _party(std::move(party)) {}
  Share(const Share&) = delete;
  Share& operator=(const Share&) = delete;
  ~Share() { _bound.giveBack(_party, _amount); }

  /// False, and nothing more is taken, beyond the bound.
  bool grow(std::size_t amount) {
    if (!_bound.take(_party, amount)) return false;
    _amount += amount;
    return true;
  }
  const Party& party() const { return _party; }

 private:
  SharedBound& _bound;
  const Party _party;
  std::size_t _amount = 0;
};

}  // namespace ZebManager
