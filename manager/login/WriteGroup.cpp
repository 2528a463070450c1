#include "login/WriteGroup.h"

#include <grp.h>
#include <pwd.h>

#include <algorithm>
#include <vector>

namespace ZebManager {
namespace {

/// Calls one of the reentrant look-ups with as much memory as it needs; null when there is no such entry.
template <class Entry, class LookUp>
const Entry* found(Entry& entry, std::vector<char>& memory, LookUp lookUp) {
  constexpr std::size_t kMost = 1U << 20;
  Entry* result = nullptr;
  for (memory.resize(1024); memory.size() <= kMost; memory.resize(memory.size() * 2)) {
    if (lookUp(&entry, memory.data(), memory.size(), &result) != ERANGE) break;
  }
  return result;
}

}  // namespace

bool isMember(const std::string& user, const std::string& groupName) {
  std::vector<char> memory;
  group wanted{};
  if (!found(wanted, memory, [&](auto... rest) { return getgrnam_r(groupName.c_str(), rest...); })) {
    return false;
  }
  const gid_t id = wanted.gr_gid;
  passwd known{};
  if (!found(known, memory, [&](auto... rest) { return getpwnam_r(user.c_str(), rest...); })) return false;
  int count = 1024;
  std::vector<gid_t> groups(static_cast<std::size_t>(count));
  if (getgrouplist(user.c_str(), known.pw_gid, groups.data(), &count) < 0) return false;
  groups.resize(static_cast<std::size_t>(count));
  return std::find(groups.begin(), groups.end(), id) != groups.end();
}

std::string userName(uid_t user) {
  std::vector<char> memory;
  passwd known{};
  return found(known, memory, [&](auto... rest) { return getpwuid_r(user, rest...); }) ? known.pw_name
                                                                                       : std::to_string(user);
}

}  // namespace ZebManager
