#pragma once

#include <cstdint>
#include <functional>

#include "netlink/Attributes.h"

namespace ZEB::ethernet {

/// Follows the answer to one request through the datagrams that it comes in. Messages of other requests and
/// of other senders' making are passed over.
class ReplyReader {
 public:
  enum class State : std::uint8_t {
    More,         ///< the answer goes on
    Done,         ///< it ended well
    Interrupted,  ///< it ended, but what it lists changed meanwhile: ask again
    Failed,       ///< the kernel refused or broke off; `error` says why
  };

  /// Called with message type and payload of each message of the answer.
  using Sink = std::function<void(std::uint16_t, Bytes)>;

  ReplyReader(std::uint32_t sequence, Sink sink) : _sequence(sequence), _sink(std::move(sink)) {}

  State feed(Bytes datagram);
  /// An errno value.
  int error() const { return _error; }

 private:
  State end(Bytes payload);

  std::uint32_t _sequence;
  Sink _sink;
  bool _interrupted = false;
  int _error = 0;
};

}  // namespace ZEB::ethernet
