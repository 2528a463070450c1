#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "netlink/ReplyReader.h"
#include "netlink/Request.h"
#include "posix/FileDescriptor.h"
#include "snapshot/Outcome.h"

namespace ZEB::ethernet {

/// Carries datagrams to and from the kernel: the place where tests put something else.
class Wire {
 public:
  virtual ~Wire() = default;
  /// 0, or an errno value.
  virtual int send(Bytes datagram) = 0;
  /// The datagram's size, or a negative errno value.
  virtual std::ptrdiff_t receive(std::span<std::byte> buffer) = 0;
};

/// A netlink socket to the kernel. Waits for an answer no longer than a few seconds.
class KernelWire : public Wire {
 public:
  static Outcome<std::unique_ptr<Wire>> open(int protocol);
  int send(Bytes datagram) override;
  std::ptrdiff_t receive(std::span<std::byte> buffer) override;

 private:
  explicit KernelWire(FileDescriptor socket) : _socket(std::move(socket)) {}
  FileDescriptor _socket;
};

/// Asks and follows the answer to its end. An interrupted dump and one whose datagrams were lost are asked
/// for again, a few times.
class QuerySocket {
 public:
  explicit QuerySocket(std::unique_ptr<Wire> wire);

  /// Called before each try, so that what a broken one delivered can be dropped.
  using Restart = std::function<void()>;

  /// `request` is an answer's worth: a dump, or a single question with NLM_F_ACK. `what` names it in a
  /// failure.
  std::optional<Failure> ask(Request& request, const char* what, const ReplyReader::Sink& sink,
                             const Restart& restart);

 private:
  ReplyReader::State attempt(Request& request, const ReplyReader::Sink& sink, int& error);

  std::unique_ptr<Wire> _wire;
  std::vector<std::byte> _buffer;
  std::uint32_t _sequence = 0;
};

}  // namespace ZEB::ethernet
