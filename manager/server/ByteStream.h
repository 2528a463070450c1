// A body that is made while it is sent.
#pragma once

#include <string>
#include <string_view>

namespace ZebManager {

/// Used by one thread, that of its connection, and deleted when the client has gone, at the end of the
/// server, or after the last bytes.
class ByteStream {
 public:
  ByteStream() = default;
  ByteStream(const ByteStream&) = delete;
  ByteStream& operator=(const ByteStream&) = delete;
  virtual ~ByteStream() = default;

  /// A descriptor that is readable when there are bytes to take, and when there will be no more. The same for
  /// as long as this lives.
  virtual int ready() const = 0;
  /// Appends what there is and makes `ready` unreadable; waits for nothing. False when these are the last.
  virtual bool takeInto(std::string& bytes) = 0;
  /// What is sent when nothing has come for a while, so that the connection is known to live: bytes that say
  /// nothing to the client, one at least.
  virtual std::string_view heartbeat() const = 0;
};

}  // namespace ZebManager
