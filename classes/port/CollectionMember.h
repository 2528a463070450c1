#pragma once

#include <atomic>

#include "common/OperationalStatus.h"

namespace ZEB {

/// What a port and a team are besides an instance: members of the Ethernet collection, with a filter that
/// says whether they count. Safe from several threads.
class CollectionMember {
 public:
  enum class Kind { Port, Team };

  explicit CollectionMember(Kind kind) : _kind(kind) {}
  virtual ~CollectionMember() = default;
  CollectionMember(const CollectionMember&) = delete;
  CollectionMember& operator=(const CollectionMember&) = delete;

  Kind kind() const { return _kind; }

  /// The status filter; on when constructed.
  bool included() const { return _included; }
  void setIncluded(bool included) { _included = included; }

  /// The status that was seen last, without looking anew.
  virtual operationalStatus lastStatus() = 0;

 private:
  const Kind _kind;
  std::atomic<bool> _included{true};
};

}  // namespace ZEB
