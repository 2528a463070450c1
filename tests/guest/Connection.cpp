#include "Connection.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <array>
#include <cstring>
#include <thread>

#include "GuestError.h"

namespace ZEB::guest {

Connection::Connection(const std::filesystem::path& path, const Deadline& deadline)
    : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (!socket_ || path.native().size() >= sizeof address.sun_path) {
    throw GuestError("no socket for " + path.string());
  }
  std::memcpy(address.sun_path, path.c_str(), path.native().size() + 1);
  while (::connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    if (deadline.passed()) throw GuestError::fromErrno(path.string());
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

void Connection::awaitReady(short events, const Deadline& deadline) const {
  pollfd event{.fd = socket_.get(), .events = events, .revents = 0};
  int ready = 0;
  do {
    ready = ::poll(&event, 1, deadline.milliseconds());
  } while (ready < 0 && errno == EINTR);
  if (ready == 0) throw GuestError("the guest did not answer in time");
}

void Connection::send(std::string_view text, const Deadline& deadline) {
  while (!text.empty()) {
    awaitReady(POLLOUT, deadline);
    const ssize_t sent = ::send(socket_.get(), text.data(), text.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno != EAGAIN && errno != EINTR) throw GuestError::fromErrno("send");
    if (sent > 0) text.remove_prefix(static_cast<size_t>(sent));
  }
}

void Connection::receive(const Deadline& deadline) {
  awaitReady(POLLIN, deadline);
  std::array<char, 65536> buffer;
  const ssize_t length = ::recv(socket_.get(), buffer.data(), buffer.size(), 0);
  if (length == 0) throw GuestError("the guest is gone");
  if (length < 0 && errno != EAGAIN && errno != EINTR) throw GuestError::fromErrno("recv");
  if (length > 0) received_.append(buffer.data(), static_cast<size_t>(length));
}

std::string Connection::readLine(const Deadline& deadline) {
  size_t end;
  while ((end = received_.find('\n')) == std::string::npos) receive(deadline);
  std::string line = read(end + 1, deadline);
  line.pop_back();
  return line;
}

std::string Connection::read(size_t length, const Deadline& deadline) {
  while (received_.size() < length) receive(deadline);
  std::string text = received_.substr(0, length);
  received_.erase(0, length);
  return text;
}

}  // namespace ZEB::guest
