#include "TestListener.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>
#include <stdexcept>

namespace ZebHost {
namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr char kLength[] = "Content-Length: ";

int listenOn(std::uint16_t port, std::uint16_t& bound) {
  const int listening = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int yes = 1;
  setsockopt(listening, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  socklen_t size = sizeof address;
  if (bind(listening, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listening, 16) != 0 ||
      getsockname(listening, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    close(listening);
    throw std::runtime_error("cannot listen on the loopback");
  }
  bound = ntohs(address.sin_port);
  return listening;
}

/// Nothing when the other end closes first.
std::optional<TestListener::Request> readRequest(int connection) {
  std::string text;
  char bytes[4096];
  while (true) {
    const std::size_t end = text.find("\r\n\r\n");
    if (end != std::string::npos) {
      const std::size_t field = text.find(kLength);
      const std::size_t length = field < end ? std::stoul(text.substr(field + sizeof kLength - 1)) : 0;
      if (text.size() >= end + 4 + length)
        return TestListener::Request{text.substr(0, end), text.substr(end + 4)};
    }
    const ssize_t got = recv(connection, bytes, sizeof bytes, 0);
    if (got <= 0) return std::nullopt;
    text.append(bytes, static_cast<std::size_t>(got));
  }
}

}  // namespace

std::string TestListener::response(const std::string& status, const std::string& body) {
  return "HTTP/1.1 " + status + "\r\nContent-Type: application/xml\r\nConnection: close\r\nContent-Length: " +
         std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string TestListener::acknowledgement() {
  return response("200 OK",
                  "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
                  "PROTOCOLVERSION=\"1.0\"><SIMPLEEXPRSP><EXPMETHODRESPONSE NAME=\"ExportIndication\">"
                  "<IRETURNVALUE/></EXPMETHODRESPONSE></SIMPLEEXPRSP></MESSAGE></CIM>");
}

std::string TestListener::cimError() {
  return response(
      "200 OK",
      "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
      "PROTOCOLVERSION=\"1.0\"><SIMPLEEXPRSP><EXPMETHODRESPONSE NAME=\"ExportIndication\">"
      "<ERROR CODE=\"1\" DESCRIPTION=\"not today\"/></EXPMETHODRESPONSE></SIMPLEEXPRSP></MESSAGE></CIM>");
}

TestListener::TestListener(Script script, std::uint16_t port)
    : _script(std::move(script)), _socket(listenOn(port, _port)) {
  if (pipe(_stop) != 0) throw std::runtime_error("no pipe");
  _thread = std::thread([this] { serve(); });
}

TestListener::~TestListener() {
  close(_stop[1]);
  _thread.join();
  close(_stop[0]);
  close(_socket);
}

void TestListener::serve() {
  while (true) {
    pollfd watched[] = {{_socket, POLLIN, 0}, {_stop[0], POLLIN, 0}};
    poll(watched, 2, -1);
    if (watched[1].revents != 0) return;
    const int connection = accept(_socket, nullptr, nullptr);
    if (connection < 0) continue;
    const timeval limit{5, 0};
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    answer(connection);
    close(connection);
  }
}

void TestListener::answer(int connection) {
  const auto request = readRequest(connection);
  if (!request) return;
  std::size_t number = 0;
  {
    const std::lock_guard lock(_mutex);
    number = _requests.size();
    _requests.push_back(*request);
  }
  const std::string text = _script(number, *request);
  if (!text.empty()) send(connection, text.data(), text.size(), MSG_NOSIGNAL);
  _came.notify_all();
}

std::vector<TestListener::Request> TestListener::requests() const {
  const std::lock_guard lock(_mutex);
  return _requests;
}

bool TestListener::waitFor(std::size_t count) const {
  std::unique_lock lock(_mutex);
  return _came.wait_for(lock, kPatience, [&] { return _requests.size() >= count; });
}

std::uint16_t freePort() {
  std::uint16_t port = 0;
  close(listenOn(0, port));
  return port;
}

}  // namespace ZebHost
