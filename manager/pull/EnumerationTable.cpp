#include "pull/EnumerationTable.h"

#include <sys/random.h>

#include <algorithm>
#include <array>

#include "pull/PullErrors.h"
#include "schema/Caseless.h"

namespace ZebManager {
namespace {

/// What all share that have not signed in, and what one has who has.
constexpr unsigned kPartOfNobody = 2;
constexpr unsigned kPartOfUser = 4;

/// Nobody guesses one.
std::string freshName() {
  constexpr char kDigits[] = "0123456789abcdef";
  std::array<unsigned char, 16> bytes{};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
    throw CimError(CMPI_RC_ERR_FAILED, "there is no randomness for a context");
  std::string name;
  for (const unsigned char byte : bytes) name += {kDigits[byte >> 4], kDigits[byte & 15]};
  return name;
}

[[noreturn]] void unknown() {
  throw CimError(kInvalidEnumerationContext, "there is no such enumeration, or its time was up");
}

}  // namespace

bool EnumerationOwner::is(const EnumerationOwner& other) const {
  return user == other.user && sameName(nameSpace, other.nameSpace);
}

PulledEnumeration::PulledEnumeration(EnumerationOwner opener, PulledKind elements, OpenedEnumeration opened)
    : owner(std::move(opener)),
      kind(elements),
      plan(std::move(opened.plan)),
      count(opened.count),
      _paths(std::move(opened.paths)),
      _reader(_paths) {}

std::vector<std::string> PulledEnumeration::peek(std::size_t most) {
  while (_ahead.size() < most && !_reader.atEnd()) _ahead.push_back(_reader.next());
  const auto found = static_cast<std::ptrdiff_t>(std::min(most, _ahead.size()));
  return {_ahead.begin(), _ahead.begin() + found};
}

void PulledEnumeration::use(std::size_t paths) {
  _ahead.erase(_ahead.begin(), _ahead.begin() + static_cast<std::ptrdiff_t>(std::min(paths, _ahead.size())));
}

void EnumerationTable::endThoseInTime() {
  const auto now = Clock::now();
  std::erase_if(_rows, [now](const auto& row) { return !row.second.taken && row.second.end <= now; });
}

void EnumerationTable::refuse(const std::string& user, std::size_t bytes) const {
  std::size_t own = 0;
  std::size_t ownBytes = bytes;
  std::size_t allBytes = bytes;
  for (const auto& [name, row] : _rows) {
    const bool mine = row.enumeration->owner.user == user;
    own += mine ? 1 : 0;
    ownBytes += mine ? row.enumeration->bytes() : 0;
    allBytes += row.enumeration->bytes();
  }
  const unsigned part = user.empty() ? kPartOfNobody : kPartOfUser;
  if (own >= (_limits.most + part - 1) / part || _rows.size() >= _limits.most)
    throw CimError(kServerLimitsExceeded, "too many enumerations are open");
  if (ownBytes > _limits.bytes / part || allBytes > _limits.bytes)
    throw CimError(kServerLimitsExceeded, "the enumerations that are open are too big together");
}

void EnumerationTable::requirePlace(const std::string& user) {
  const std::lock_guard lock(_mutex);
  endThoseInTime();
  refuse(user, 0);
}

std::string EnumerationTable::add(std::shared_ptr<PulledEnumeration> enumeration) {
  const std::lock_guard lock(_mutex);
  endThoseInTime();
  refuse(enumeration->owner.user, enumeration->bytes());
  std::string name = freshName();
  const auto end = Clock::now() + enumeration->time;
  _rows.emplace(name, Row{std::move(enumeration), end});
  return name;
}

EnumerationTable::Rows::iterator EnumerationTable::find(const std::string& name,
                                                        const EnumerationOwner& owner) {
  endThoseInTime();
  const auto row = _rows.find(name);
  if (row == _rows.end() || row->second.closed || !row->second.enumeration->owner.is(owner)) unknown();
  return row;
}

std::shared_ptr<PulledEnumeration> EnumerationTable::take(const std::string& name,
                                                          const EnumerationOwner& owner,
                                                          std::optional<PulledKind> kind) {
  const std::lock_guard lock(_mutex);
  Row& row = find(name, owner)->second;
  if (kind && *kind != row.enumeration->kind)
    throw CimError(kInvalidEnumerationContext, "the enumeration has other elements");
  if (row.taken) throw CimError(CMPI_RC_ERR_FAILED, "another operation on the enumeration is under way");
  row.taken = true;
  return row.enumeration;
}

bool EnumerationTable::giveBack(const std::string& name, bool stays) {
  const std::lock_guard lock(_mutex);
  const auto row = _rows.find(name);
  if (row == _rows.end()) return false;
  const bool closed = row->second.closed;
  row->second.taken = false;
  row->second.end = Clock::now() + row->second.enumeration->time;
  if (closed || !stays) _rows.erase(row);
  return !closed;
}

void EnumerationTable::close(const std::string& name, const EnumerationOwner& owner) {
  const std::lock_guard lock(_mutex);
  const auto row = find(name, owner);
  row->second.closed = true;
  if (!row->second.taken) _rows.erase(row);
}

std::size_t EnumerationTable::size() {
  const std::lock_guard lock(_mutex);
  endThoseInTime();
  return _rows.size();
}

}  // namespace ZebManager
