#pragma once

#include <sys/stat.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "recorded/InterfaceIndex.h"
#include "recorded/SnapshotReader.h"
#include "snapshot/HostSource.h"

namespace ZEB::ethernet {

/// Plays a snapshot file back. The file is read again when it changes, and a timeline then begins anew. While
/// the file is bad or missing there is no answer.
class RecordedSource : public HostSource {
 public:
  using Clock = std::chrono::steady_clock;

  explicit RecordedSource(std::string file, std::function<Clock::time_point()> now = Clock::now);

  Outcome<HostSnapshot> readAll() override;
  Outcome<HostSnapshot> readOne(std::uint32_t index) override;
  bool announced() override;

 private:
  /// What tells a file from the one that was read.
  struct Stamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = -1;
    timespec changed{};
    bool operator==(const Stamp& other) const;
  };

  static Stamp stampOf(const std::string& file);
  std::optional<Failure> load();
  std::size_t momentNow() const;
  /// The snapshot with the time of playback, if it has none of its own.
  static HostSnapshot timed(HostSnapshot snapshot);

  std::string _file;
  std::function<Clock::time_point()> _now;
  Stamp _stamp;
  std::vector<TimedSnapshot> _moments;
  std::optional<InterfaceIndex> _index;  ///< of moment `_indexed`; made when one interface is asked for
  std::size_t _indexed = 0;
  Clock::time_point _began;
  std::size_t _delivered = 0;  ///< moment of the last `readAll`
  bool _read = false;
};

}  // namespace ZEB::ethernet
