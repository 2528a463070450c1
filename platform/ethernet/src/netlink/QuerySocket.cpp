#include "netlink/QuerySocket.h"

#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <cstring>

namespace ZEB::ethernet {
namespace {

constexpr int kAttempts = 8;
constexpr timeval kPatience{5, 0};
// The kernel fills what the longest read so far offered, up to 32 KiB.
constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

void setOption(int socket, int level, int option, const void* value, socklen_t size) {
  // Every option asked for is an improvement that some kernel lacks; without it things work, only less well.
  (void)setsockopt(socket, level, option, value, size);
}

}  // namespace

Outcome<std::unique_ptr<Wire>> KernelWire::open(int protocol) {
  FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, protocol));
  if (!socket) return Failure{errno, std::string("netlink socket: ") + std::strerror(errno)};
  const int on = 1;
  setOption(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
  setOption(socket.get(), SOL_NETLINK, NETLINK_GET_STRICT_CHK, &on, sizeof on);
  setOption(socket.get(), SOL_NETLINK, NETLINK_CAP_ACK, &on, sizeof on);
  return std::unique_ptr<Wire>(new KernelWire(std::move(socket)));
}

int KernelWire::send(Bytes datagram) {
  sockaddr_nl kernel{};
  kernel.nl_family = AF_NETLINK;
  const auto sent = ::sendto(_socket.get(), datagram.data(), datagram.size(), 0,
                             reinterpret_cast<const sockaddr*>(&kernel), sizeof kernel);
  return sent < 0 ? errno : 0;
}

std::ptrdiff_t KernelWire::receive(std::span<std::byte> buffer) {
  sockaddr_nl sender{};
  socklen_t size = sizeof sender;
  std::ptrdiff_t received = 0;
  do {
    received = ::recvfrom(_socket.get(), buffer.data(), buffer.size(), MSG_TRUNC,
                          reinterpret_cast<sockaddr*>(&sender), &size);
  } while ((received < 0 && errno == EINTR) || (received >= 0 && sender.nl_pid != 0));
  if (received < 0) return -errno;
  return static_cast<std::size_t>(received) > buffer.size() ? -EMSGSIZE : received;
}

QuerySocket::QuerySocket(std::unique_ptr<Wire> wire) : _wire(std::move(wire)), _buffer(kBufferSize) {}

std::optional<Failure> QuerySocket::ask(Request& request, const char* what, const ReplyReader::Sink& sink,
                                        const Restart& restart) {
  int error = 0;
  for (int i = 0; i < kAttempts; ++i) {
    restart();
    const auto state = attempt(request, sink, error);
    if (state == ReplyReader::State::Done) return std::nullopt;
    const bool again = state == ReplyReader::State::Interrupted || error == ENOBUFS || error == EBUSY;
    if (!again) break;
  }
  return Failure{error,
                 std::string(what) + ": " + (error ? std::strerror(error) : "changes while it is listed")};
}

ReplyReader::State QuerySocket::attempt(Request& request, const ReplyReader::Sink& sink, int& error) {
  ReplyReader reader(++_sequence, sink);
  error = _wire->send(request.bytes(_sequence));
  if (error != 0) return ReplyReader::State::Failed;
  for (auto state = ReplyReader::State::More; true;) {
    const std::ptrdiff_t size = _wire->receive(_buffer);
    if (size < 0) {
      error = static_cast<int>(-size);
      return ReplyReader::State::Failed;
    }
    state = reader.feed(Bytes(_buffer).first(static_cast<std::size_t>(size)));
    if (state == ReplyReader::State::More) continue;
    error = reader.error();
    return state;
  }
}

}  // namespace ZEB::ethernet
