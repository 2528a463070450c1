// What crosses the socket pair between the server and a provider process.
//
// A frame is a header of 16 bytes (kind, length of the body, number; in the machine's byte order, since both
// ends run on it) and the body.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ZebManager {

struct Frame {
  enum class Kind : std::uint32_t {
    Filters = 1,  ///< to the provider: what is subscribed to
    Perform,      ///< to the provider: a message; the number comes back with the answer
    Taken,        ///< to the provider: an indication reached the sink
    Ready,        ///< from the provider: the plug-in is loaded
    Answer,       ///< from the provider: of the message with this number
    Refusal,      ///< from the provider: why the message with this number got no answer
    Indication,   ///< from the provider: what it adds to the reported, names of filters, the element
    Fault,        ///< from the provider: why it cannot start
    AskPulse,     ///< to the provider: how are calls getting on?
    Pulse,        ///< from the provider: see `Pulse`
    Retire,       ///< to the provider: take no indication from the plug-in any more
    Retired,      ///< from the provider: and all that were taken were sent
    Begin,        ///< to the provider, first of all: what the process before it had reported
    Reported,     ///< from the provider: all that the plug-in has reported
    Login,        ///< to the process that judges logins: an attempt
    Verdict,      ///< from that process: the number is the verdict
    Name,  ///< from a command: what is called so? The number is 1 when the last answer is not true any more
  };
  static constexpr Kind kLast = Kind::Name;

  Kind kind = Kind::Filters;
  std::uint64_t number = 0;
  std::string body;
};

/// What a frame may carry. A larger answer is an error of its call.
inline constexpr std::size_t kLongestBody = std::size_t{256} << 20;

/// The other end sends what no end of this program sends.
class FrameError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What became of a look at the socket.
enum class Transfer { Done, WouldBlock, Ended };

/// Puts frames together from what arrives, however it is cut. Memory grows with what has arrived, not with
/// what a header announces.
class FrameReader {
 public:
  explicit FrameReader(std::size_t longestBody = kLongestBody) : _longestBody(longestBody) {}

  /// Reads once. Done: something arrived. Throws FrameError for a header that cannot be.
  Transfer receive(int socket);
  /// The next complete frame.
  std::optional<Frame> next();

 private:
  void take(const char* bytes, std::size_t count);
  void takeHeader();

  const std::size_t _longestBody;
  std::unique_ptr<char[]> _chunk;  ///< where reads end; too big for any stack
  std::string _header;
  Frame _frame;
  std::size_t _missing = 0;  ///< bytes of the body; meaningful behind a complete header
  std::deque<Frame> _complete;
};

/// Frames on their way out through a socket that does not block. Not for two threads at once.
class FrameWriter {
 public:
  void add(const Frame& frame);
  bool empty() const { return _waiting.empty(); }
  /// Done: nothing waits any more.
  Transfer send(int socket);

 private:
  std::deque<std::string> _waiting;
  std::size_t _sent = 0;  ///< bytes of the first
};

/// Sends whole frames through a socket that blocks. Safe from any thread.
class FrameSender {
 public:
  explicit FrameSender(int socket) : _socket(socket) {}
  /// False when the other end is gone.
  bool send(const Frame& frame);

 private:
  std::mutex _mutex;
  const int _socket;
};

/// A list of texts as one, and back. Reading throws FrameError when it was cut.
std::string packTexts(const std::vector<std::string>& texts);
std::vector<std::string> unpackTexts(std::string_view packed);

}  // namespace ZebManager
