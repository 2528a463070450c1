#include "support/TestListener.h"

#include <arpa/inet.h>
#include <gnutls/gnutls.h>
#include <gnutls/x509.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <ctime>
#include <optional>
#include <stdexcept>
#include <utility>

namespace ZebManager {
namespace {

constexpr std::chrono::seconds kPatience{60};
constexpr char kLength[] = "Content-Length: ";

ZEB::FileDescriptor listenOn(std::uint16_t port, std::uint16_t& bound) {
  ZEB::FileDescriptor listening(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const int yes = 1;
  setsockopt(listening.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  socklen_t size = sizeof address;
  if (bind(listening.get(), reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      listen(listening.get(), 16) != 0 ||
      getsockname(listening.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("cannot listen on the loopback");
  }
  bound = ntohs(address.sin_port);
  return listening;
}

}  // namespace

/// The bytes of a connection, through TLS or as they are.
class TestConnection {
 public:
  TestConnection(ZEB::FileDescriptor socket, const TestCertificate* certificate)
      : _socket(std::move(socket)) {
    if (!certificate) return;
    gnutls_init(&_session, GNUTLS_SERVER);
    gnutls_priority_set_direct(_session, certificate->_priorities.c_str(), nullptr);
    gnutls_credentials_set(_session, GNUTLS_CRD_CERTIFICATE, certificate->_credentials);
    gnutls_transport_set_int(_session, _socket.get());
    int result = 0;
    do result = gnutls_handshake(_session);
    while (result < 0 && gnutls_error_is_fatal(result) == 0);
  }
  TestConnection(const TestConnection&) = delete;
  TestConnection& operator=(const TestConnection&) = delete;
  ~TestConnection() {
    if (_session) gnutls_deinit(_session);
  }

  ssize_t receive(char* bytes, std::size_t size) {
    return _session ? gnutls_record_recv(_session, bytes, size) : recv(_socket.get(), bytes, size, 0);
  }
  void sendAll(const std::string& text) {
    if (!_session) {
      send(_socket.get(), text.data(), text.size(), MSG_NOSIGNAL);
      return;
    }
    for (std::size_t sent = 0; sent < text.size();) {
      const ssize_t count = gnutls_record_send(_session, text.data() + sent, text.size() - sent);
      if (count <= 0) return;
      sent += static_cast<std::size_t>(count);
    }
    gnutls_bye(_session, GNUTLS_SHUT_WR);
  }

 private:
  ZEB::FileDescriptor _socket;
  gnutls_session_t _session = nullptr;
};

namespace {

/// Nothing when the other end closes first.
std::optional<TestListener::Request> readRequest(TestConnection& connection) {
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
    const ssize_t got = connection.receive(bytes, sizeof bytes);
    if (got <= 0) return std::nullopt;
    text.append(bytes, static_cast<std::size_t>(got));
  }
}

}  // namespace

TestCertificate::TestCertificate(std::string priorities) : _priorities(std::move(priorities)) {
  gnutls_x509_privkey_t key = nullptr;
  gnutls_x509_privkey_init(&key);
  gnutls_x509_privkey_generate(key, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0);
  gnutls_x509_crt_t certificate = nullptr;
  gnutls_x509_crt_init(&certificate);
  constexpr unsigned char kSerial[] = {1};
  constexpr unsigned char kLoopback[] = {127, 0, 0, 1};
  gnutls_x509_crt_set_version(certificate, 3);
  gnutls_x509_crt_set_serial(certificate, kSerial, sizeof kSerial);
  gnutls_x509_crt_set_activation_time(certificate, time(nullptr) - 3600);
  gnutls_x509_crt_set_expiration_time(certificate, time(nullptr) + 3600);
  gnutls_x509_crt_set_dn(certificate, "CN=listener", nullptr);
  gnutls_x509_crt_set_subject_alt_name(certificate, GNUTLS_SAN_IPADDRESS, kLoopback, sizeof kLoopback,
                                       GNUTLS_FSAN_SET);
  gnutls_x509_crt_set_key(certificate, key);
  const bool made = gnutls_x509_crt_sign2(certificate, certificate, key, GNUTLS_DIG_SHA256, 0) == 0;
  gnutls_datum_t text{};
  gnutls_x509_crt_export2(certificate, GNUTLS_X509_FMT_PEM, &text);
  _pem.assign(reinterpret_cast<const char*>(text.data), text.size);
  gnutls_free(text.data);
  gnutls_certificate_allocate_credentials(&_credentials);
  gnutls_certificate_set_x509_key(_credentials, &certificate, 1, key);
  gnutls_x509_crt_deinit(certificate);
  gnutls_x509_privkey_deinit(key);
  if (!made) throw std::runtime_error("no certificate for the test");
}

TestCertificate::~TestCertificate() {
  gnutls_certificate_free_credentials(_credentials);
}

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

TestListener::TestListener(Script script, std::uint16_t port, const TestCertificate* certificate)
    : _script(std::move(script)), _certificate(certificate), _socket(listenOn(port, _port)) {
  _thread = std::thread([this] { serve(); });
}

TestListener::~TestListener() {
  _stop.writing = {};
  _thread.join();
}

void TestListener::serve() {
  while (true) {
    pollfd watched[] = {{_socket.get(), POLLIN, 0}, {_stop.reading.get(), POLLIN, 0}};
    poll(watched, 2, -1);
    if (watched[1].revents != 0) return;
    ZEB::FileDescriptor connection(accept4(_socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!connection) continue;
    const timeval limit{5, 0};
    setsockopt(connection.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    answer(std::move(connection));
  }
}

void TestListener::answer(ZEB::FileDescriptor socket) {
  TestConnection connection(std::move(socket), _certificate);
  const auto request = readRequest(connection);
  if (!request) return;
  std::size_t number = 0;
  {
    const std::lock_guard lock(_mutex);
    number = _requests.size();
    _requests.push_back(*request);
  }
  const std::string text = _script(number, *request);
  if (!text.empty()) connection.sendAll(text);
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
  listenOn(0, port);
  return port;
}

}  // namespace ZebManager
