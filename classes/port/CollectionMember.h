#pragma once

#include <atomic>
#include <string>

#include "common/OperationalStatus.h"

namespace ZEB {

/// What a port and a team are besides an instance: members of the Ethernet collection, with a filter that
/// says whether they count. Safe from several threads.
class CollectionMember {
 public:
  enum class Kind { Port, Team };

  CollectionMember(Kind kind, std::string filterKey) : _kind(kind), _filterKey(std::move(filterKey)) {}
  virtual ~CollectionMember() = default;
  CollectionMember(const CollectionMember&) = delete;
  CollectionMember& operator=(const CollectionMember&) = delete;

  Kind kind() const { return _kind; }

  /// What the store keeps the status filter under: the text of the instance's path, made once, because a
  /// build asks for it again and again.
  const std::string& filterKey() const { return _filterKey; }

  /// The status filter; on when constructed.
  bool included() const { return _included; }
  void setIncluded(bool included) { _included = included; }

  /// The status that was seen last, without looking anew.
  virtual operationalStatus lastStatus() = 0;

 private:
  const Kind _kind;
  std::atomic<bool> _included{true};
  const std::string _filterKey;
};

}  // namespace ZEB
