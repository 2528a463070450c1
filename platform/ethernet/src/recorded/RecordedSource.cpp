#include "recorded/RecordedSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fstream>

namespace ZEB::ethernet {

bool RecordedSource::Stamp::operator==(const Stamp& other) const {
  return device == other.device && inode == other.inode && size == other.size &&
         changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

RecordedSource::RecordedSource(std::string file, std::function<Clock::time_point()> now)
    : _file(std::move(file)), _now(std::move(now)) {}

RecordedSource::Stamp RecordedSource::stampOf(const std::string& file) {
  struct stat status {};
  // A device or a pipe may go on for ever.
  if (::stat(file.c_str(), &status) != 0) return {};
  if (!S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : ENODEV;
    return {};
  }
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

std::optional<Failure> RecordedSource::load() {
  const Stamp stamp = stampOf(_file);
  if (_read && stamp == _stamp) return std::nullopt;
  _read = false;
  const auto fail = [&](int code, const std::string& what) {
    return Failure{code, "snapshot " + _file + ": " + what};
  };
  if (stamp.size > static_cast<off_t>(kLargestSnapshotFile))
    return fail(EFBIG, "larger than any snapshot of a host");
  if (stamp.size < 0) return fail(errno, std::strerror(errno));
  std::ifstream in(_file, std::ios::binary);
  if (!in) return fail(errno, std::strerror(errno));
  std::string text(static_cast<std::size_t>(stamp.size) + 1,
                   '\0');  // more has come while it is read: that is seen
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(in.gcount()));
  auto moments = readSnapshots(text);
  if (!moments) return fail(0, moments.failure().what);
  _index.reset();
  _moments = std::move(*moments);
  _stamp = stamp;
  _began = _now();
  _read = true;
  return std::nullopt;
}

std::size_t RecordedSource::momentNow() const {
  const double elapsed = std::chrono::duration<double>(_now() - _began).count();
  const auto next = std::ranges::upper_bound(_moments, elapsed, {}, &TimedSnapshot::at);
  return next == _moments.begin() ? 0 : static_cast<std::size_t>(next - _moments.begin() - 1);
}

HostSnapshot RecordedSource::timed(HostSnapshot snapshot) {
  if (snapshot.sampleTime == 0) snapshot.sampleTime = std::time(nullptr);
  return snapshot;
}

Outcome<HostSnapshot> RecordedSource::readAll() {
  if (auto failure = load()) return std::move(*failure);
  _delivered = momentNow();
  return timed(_moments[_delivered].snapshot);
}

Outcome<HostSnapshot> RecordedSource::readOne(std::uint32_t index) {
  if (auto failure = load()) return std::move(*failure);
  const std::size_t moment = momentNow();
  if (!_index || _indexed != moment) _index.emplace(_moments[moment].snapshot);
  _indexed = moment;
  return timed(_index->only(index));
}

bool RecordedSource::announced() {
  return !_read || !(stampOf(_file) == _stamp) || momentNow() != _delivered;
}

}  // namespace ZEB::ethernet
