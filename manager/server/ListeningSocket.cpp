#include "server/ListeningSocket.h"

#include <netdb.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <memory>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Addresses = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

Addresses resolve(const std::string& where) {
  const std::size_t colon = where.rfind(':');
  if (colon == std::string::npos) throw ManagerError("'" + where + "': expected ADDRESS:PORT");
  const std::string service = where.substr(colon + 1);
  std::uint16_t port = 0;  // the library takes more than there are, and none at all
  const auto [end, wrong] = std::from_chars(service.data(), service.data() + service.size(), port);
  if (wrong != std::errc() || *end != '\0')
    throw ManagerError("'" + where + "': expected a port behind the colon");
  std::string host = where.substr(0, colon);
  if (host.size() > 1 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  if (host == "localhost") host = "127.0.0.1";
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  const int error = getaddrinfo(host == "*" ? nullptr : host.c_str(), service.c_str(), &hints, &found);
  if (error != 0) throw ManagerError("'" + where + "': " + gai_strerror(error));
  return {found, freeaddrinfo};
}

[[noreturn]] void refuse(const std::string& where) {
  throw ManagerError("cannot listen at " + where + ": " + std::strerror(errno));
}

std::string addressOf(int socket) {
  sockaddr_storage bound{};
  socklen_t length = sizeof bound;
  std::array<char, NI_MAXHOST> host{};
  std::array<char, NI_MAXSERV> port{};
  auto* const generic = reinterpret_cast<sockaddr*>(&bound);
  if (getsockname(socket, generic, &length) != 0 ||
      getnameinfo(generic, length, host.data(), host.size(), port.data(), port.size(),
                  NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
    throw ManagerError("the address of a socket cannot be read");
  }
  const std::string name = host.data();
  return (name.find(':') == std::string::npos ? name : "[" + name + "]") + ":" + port.data();
}

}  // namespace

bool isListeningAddress(const std::string& where) {
  try {
    return resolve(where) != nullptr;
  } catch (const ManagerError&) {
    return false;
  }
}

BoundSocket bindAt(const std::string& where) {
  const Addresses addresses = resolve(where);
  ZEB::FileDescriptor socket(::socket(addresses->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const int on = 1;
  setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (!socket || bind(socket.get(), addresses->ai_addr, addresses->ai_addrlen) != 0) refuse(where);
  std::string address = addressOf(socket.get());
  return {std::move(socket), std::move(address)};
}

BoundSocket listenAt(const std::string& where) {
  BoundSocket bound = bindAt(where);
  if (listen(bound.socket.get(), SOMAXCONN) != 0) refuse(where);
  return bound;
}

}  // namespace ZebManager
