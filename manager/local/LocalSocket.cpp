#include "local/LocalSocket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

struct Address {
  explicit Address(const std::string& path) {
    if (path.size() >= sizeof unixAddress.sun_path) {
      throw ManagerError("the name of the socket " + path + " is too long");
    }
    unixAddress.sun_family = AF_UNIX;
    path.copy(unixAddress.sun_path, path.size());
  }
  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&unixAddress); }

  sockaddr_un unixAddress{};
};

ZEB::FileDescriptor newSocket() {
  ZEB::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket) throw ManagerError(std::string("no socket: ") + std::strerror(errno));
  return socket;
}

ManagerError failure(const std::string& path) {
  return ManagerError(path + ": " + std::strerror(errno));
}

}  // namespace

ZEB::FileDescriptor connectLocally(const std::string& path) {
  const Address address(path);
  ZEB::FileDescriptor socket = newSocket();
  if (connect(socket.get(), address.get(), sizeof address.unixAddress) == 0) return socket;
  if (errno == ENOENT || errno == ENOTDIR || errno == ECONNREFUSED) return {};
  throw ManagerError("the service cannot be asked: " + path + ": " + std::strerror(errno) +
                     "; --standalone does without");
}

ZEB::FileDescriptor listenLocally(const std::string& path) {
  if (connectLocally(path)) throw ManagerError("another service listens at " + path);
  const Address address(path);
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
  unlink(path.c_str());
  ZEB::FileDescriptor socket = newSocket();
  constexpr mode_t kEverybody = 0666;  // what they may do is decided by who they are
  if (bind(socket.get(), address.get(), sizeof address.unixAddress) != 0 ||
      chmod(path.c_str(), kEverybody) != 0 || listen(socket.get(), SOMAXCONN) != 0) {
    throw failure(path);
  }
  return socket;
}

Peer peerOf(int socket) {
  ucred credentials{};
  socklen_t length = sizeof credentials;
  if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &length) != 0) return {};
  return {credentials.uid, credentials.gid};
}

}  // namespace ZebManager
