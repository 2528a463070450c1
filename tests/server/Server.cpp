#include "Server.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "posix/Arguments.h"
#include "posix/Pipe.h"

namespace ZebManager {
namespace {

constexpr int kServerPatienceMs = 60'000;

void write(const std::filesystem::path& file, const std::string& text) {
  std::ofstream(file) << text;
}

std::size_t residentOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/statm");
  std::size_t total = 0;
  std::size_t resident = 0;
  file >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// Gives a socket the address that it is to connect from.
void bindTo(int socket, const std::string& from) {
  sockaddr_in own{};
  own.sin_family = AF_INET;
  if (inet_pton(AF_INET, from.c_str(), &own.sin_addr) != 1 ||
      bind(socket, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0) {
    throw std::runtime_error("bind");
  }
}

ZEB::FileDescriptor connectTo(const std::string& address, const std::string& from = {}) {
  const std::size_t colon = address.rfind(':');
  std::string host = address.substr(0, colon);
  if (host.front() == '[') host = host.substr(1, host.size() - 2);
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* target = nullptr;
  if (getaddrinfo(host.c_str(), address.c_str() + colon + 1, &hints, &target) != 0) {
    throw std::runtime_error("address " + address);
  }
  ZEB::FileDescriptor socket(::socket(target->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!from.empty()) bindTo(socket.get(), from);
  const int result = connect(socket.get(), target->ai_addr, target->ai_addrlen);
  freeaddrinfo(target);
  if (result != 0) throw std::runtime_error("connect");
  return socket;
}

}  // namespace

Server::Server(std::vector<std::string> arguments, const std::string& settings, const Place& place)
    : _arguments(std::move(arguments)) {
  configure(settings);
  _arguments.insert(_arguments.begin(), {place.zebcim, "--plugin", ZEB_REAL_PLUGIN});
  _arguments.insert(_arguments.end(), {"serve", "--config", (_folder / "zebcim.toml").string(), "--http",
                                       place.http, "--https", place.https});
  start();
}

void Server::start() {
  ZEB::Pipe output = ZEB::makePipe();
  const std::string store = (_folder / "store").string();
  const std::string run = (_folder / "run").string();
  _process.emplace([&] {
    setenv("ZEB_STORE_DIR", store.c_str(), 1);
    setenv("ZEB_RUN_DIR", run.c_str(), 1);
    dup2(output.writing.get(), STDOUT_FILENO);
    execv(_arguments.front().c_str(), ZEB::argumentsOf(_arguments).data());
    return 127;
  });
  output.writing = {};
  _http.clear();
  _https.clear();
  readAddresses(output.reading.get());
}

void Server::configure(const std::string& settings) {
  std::filesystem::create_directories(_folder / "pam");
  std::filesystem::create_directories(_folder / "store");
  write(_folder / "password", "#!/bin/sh\n[ \"$(tr -d '\\0')\" = secret ]\n");
  std::filesystem::permissions(_folder / "password", std::filesystem::perms::owner_all);
  write(_folder / "pam/zebcim", "auth required pam_exec.so quiet expose_authtok " +
                                    (_folder / "password").string() + "\naccount required pam_permit.so\n");
  write(_folder / "zebcim.toml", "[access]\npam-folder = \"" + (_folder / "pam").string() +
                                     "\"\nwrite-group = \"root\"\n[state]\ndirectory = \"" +
                                     (_folder / "state").string() + "\"\n" + settings);
}

void Server::readAddresses(int output) {
  std::string text;
  std::array<char, 512> buffer{};
  while (_https.empty()) {
    pollfd ready{output, POLLIN, 0};
    const ssize_t got =
        poll(&ready, 1, kServerPatienceMs) == 1 ? read(output, buffer.data(), buffer.size()) : 0;
    if (got <= 0) throw std::runtime_error("the server does not start");
    text.append(buffer.data(), static_cast<std::size_t>(got));
    std::istringstream lines(text);
    for (std::string kind, address; lines >> kind >> address && lines.peek() == '\n';) {
      (kind == "http" ? _http : _https) = address;
    }
  }
}

int Server::stop() {
  _process->kill(SIGTERM);
  return std::max(_process->wait(), -1);
}

std::vector<pid_t> Server::children() const {
  std::vector<pid_t> all;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(id()) + "/task")) {
    std::ifstream children(thread.path() / "children");
    for (pid_t child = 0; children >> child;) all.push_back(child);
  }
  return all;
}

std::size_t Server::memory() const {
  std::size_t all = residentOf(id());
  for (const pid_t child : children()) all += residentOf(child);
  return all;
}

OpenConnection::OpenConnection(const std::string& address, const std::string& bytes, const std::string& from)
    : _socket(connectTo(address, from)) {
  // One that is refused half way is closed half way.
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t went = send(_socket.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (went <= 0) break;
    sent += static_cast<std::size_t>(went);
  }
}

std::string OpenConnection::receiveAll() const {
  std::string all;
  std::array<char, 65536> buffer{};
  for (ssize_t got = 0; (got = recv(_socket.get(), buffer.data(), buffer.size(), 0)) > 0;)
    all.append(buffer.data(), static_cast<std::size_t>(got));
  return all;
}

void OpenConnection::sendByte(char byte) const {
  static_cast<void>(send(_socket.get(), &byte, 1, MSG_NOSIGNAL));
}

bool OpenConnection::isClosedWithin(double seconds) const {
  pollfd ready{_socket.get(), POLLRDHUP, 0};
  return poll(&ready, 1, static_cast<int>(seconds * 1000)) == 1;
}

std::string exchange(const std::string& address, const std::string& bytes, double seconds) {
  const ZEB::FileDescriptor socket = connectTo(address);
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  std::string answer;
  std::array<char, 65536> buffer{};
  std::size_t sent = 0;
  while (true) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd ready{socket.get(), static_cast<short>(sent < bytes.size() ? POLLIN | POLLOUT : POLLIN), 0};
    if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) <= 0) break;
    if ((ready.revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
      const ssize_t got = recv(socket.get(), buffer.data(), buffer.size(), 0);
      if (got <= 0) break;
      answer.append(buffer.data(), static_cast<std::size_t>(got));
    } else if ((ready.revents & POLLOUT) != 0) {
      const ssize_t went =
          send(socket.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
      if (went > 0) sent += static_cast<std::size_t>(went);
    }
  }
  return answer;
}

std::string post(const std::string& body, const std::string& method, const std::string& object,
                 const std::string& moreHeaders) {
  return "POST /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/xml; charset=\"utf-8\"\r\n"
         "CIMOperation: MethodCall\r\nCIMMethod: " +
         method + "\r\nCIMObject: " + object + "\r\n" + moreHeaders +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string call(const std::string& method, const std::string& parameters,
                 const std::vector<std::string>& nameSpace) {
  std::string path;
  for (const std::string& part : nameSpace) path += "<NAMESPACE NAME=\"" + part + "\"/>";
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
         "<MESSAGE ID=\"7\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"" +
         method + "\"><LOCALNAMESPACEPATH>" + path + "</LOCALNAMESPACEPATH>" + parameters +
         "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

}  // namespace ZebManager
