#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>

#include "ethernet/LayerChange.h"

namespace ZEB {

class EthernetMRA;
class EthernetTeamMRA;

/// A link message has arrived that no pass of the worker has taken account of yet. One for the process.
extern std::atomic<bool> _netlinkEvent;

/// What the netlink thread shares with the provider; it outlives the provider when the thread cannot be
/// stopped. The mutex keeps the thread's handling of one message (receive, flag, refresh) and a pass of the
/// worker apart, so that no message is lost under a pass and no source is used while it is replaced.
struct LinkWatch {
  std::mutex mutex;
  EthernetMRA* ethMRA = nullptr;          ///< null while there is none
  EthernetTeamMRA* ethTeamMRA = nullptr;  ///< null while there is none
  std::uint64_t messages = 0;             ///< how many have been received
  bool unfinished = false;                ///< a pass began to look for events and did not come to its end
  /// When a pass has to look without having been told of anything; none when none has to.
  std::optional<std::chrono::steady_clock::time_point> nextLook;

  /// Receives one message and refreshes the data sources. Answers what recv(2) answered. On the thread.
  long handleMessage(int socket);

  /// The same for a source that sends no messages: acts as on one if the source announces
  /// a change. False when it could not be read.
  bool followRecording();

  /// Addresses or routes changed: acts as on a message if that concerns anything that is served.
  void handleChange(const LayerChange& change);

  /// Has the worker look again soon, as after a message.
  static void lookAgain();
  /// Has the worker look again at that time. The caller holds the mutex, here and below.
  void lookAgainAt(std::chrono::steady_clock::time_point when);
  bool lookAgainIsDue() const;
};

}  // namespace ZEB
