#include "server/HttpServer.h"

#include <microhttpd.h>
#include <sys/eventfd.h>

#include <charconv>
#include <memory>

#include "server/ClientAddress.h"
#include "server/Outgoing.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr std::size_t kHeadBytes = 32U << 10;
constexpr std::size_t kThreadStack = 512U << 10;
/// Connections that have been shut down and whose threads have not noticed yet.
constexpr unsigned kLeaving = 64;
constexpr std::chrono::seconds kWhenFull{1};
/// For a client that takes a big answer, but slowly.
constexpr int kTimesForAnswer = 30;
/// Keys that go with the connection, and ciphers that see to it that nothing is changed.
constexpr char kCiphers[] =
    "SECURE128:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:-KX-ALL:+ECDHE-ECDSA:+ECDHE-RSA:+DHE-RSA:-MAC-ALL:+AEAD:"
    "-CIPHER-ALL:+AES-256-GCM:+CHACHA20-POLY1305:+AES-128-GCM";

int socketOf(MHD_Connection* connection) {
  return MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
}

ClientAddress clientOf(MHD_Connection* connection) {
  return ClientAddress(*MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS)->client_addr);
}

/// Numeric; empty when it cannot be told.
std::string ownAddressOf(MHD_Connection* connection) {
  sockaddr_storage own{};
  socklen_t length = sizeof own;
  auto* const generic = reinterpret_cast<sockaddr*>(&own);
  return getsockname(socketOf(connection), generic, &length) == 0 ? ClientAddress(*generic).host
                                                                  : std::string();
}

std::vector<std::string> namesIn(MHD_Connection* connection) {
  std::vector<std::string> names;
  MHD_get_connection_values(
      connection, MHD_HEADER_KIND,
      [](void* all, MHD_ValueKind, const char* name, const char*) {
        static_cast<std::vector<std::string>*>(all)->emplace_back(name);
        return MHD_YES;
      },
      &names);
  return names;
}

/// What a connection says under a name.
std::function<std::string(const std::string&)> valuesIn(MHD_Connection* connection, MHD_ValueKind kind) {
  return [connection, kind](const std::string& name) {
    const char* const value = MHD_lookup_connection_value(connection, kind, name.c_str());
    return std::string(value ? value : "");
  };
}

HttpHead headOf(MHD_Connection* connection, const char* method, const char* path) {
  const ClientAddress from = clientOf(connection);
  return {method,
          valuesIn(connection, MHD_HEADER_KIND),
          from.loopback,
          from.host,
          from.client,
          ownAddressOf(connection),
          namesIn(connection),
          path,
          valuesIn(connection, MHD_GET_ARGUMENT_KIND),
          {}};
}

/// Looked at anew for each request: a connection may stay for longer than a certificate is in date.
std::optional<ShownCertificate> certificateOf(HttpServer& server, MHD_Connection* connection) {
  const auto& users = server.bounds().settings.certificateUsers;
  const auto* const tls = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_GNUTLS_SESSION);
  if (users.empty() || !tls || !tls->tls_session) return std::nullopt;
  return shownBy(static_cast<gnutls_session_int*>(tls->tls_session), users);
}

/// One request while it arrives.
class Exchange {
 public:
  Exchange(HttpServer& server, std::optional<User> who, const Party& party)
      : user(std::move(who)),
        _requestBytes(server.bounds().settings.requestBytes),
        _place(server.requests(), party),
        _share(server.bounds().waitingBytes, party) {}

  /// Whether there is a place for it among all requests.
  bool begin() { return _place.grow(1); }

  void take(const char* bytes, std::size_t count) {
    if (_refusal) return;
    if (_body.size() + count > _requestBytes) {
      _refusal = 413;
    } else if (!_share.grow(count)) {
      _refusal = 503;
    } else {
      _body.append(bytes, count);
    }
  }

  const std::string& body() const { return _body; }
  unsigned refusal() const { return _refusal; }
  const Party& party() const { return _share.party(); }

  const std::optional<User> user;

 private:
  const std::size_t _requestBytes;
  Share _place;
  Share _share;
  std::string _body;
  unsigned _refusal = 0;
};

MHD_Result send(HttpServer& server, MHD_Connection* connection, const Party& party, HttpAnswer answer) {
  const SendingBounds bounds{server.bounds().answerBytes, server.bounds().streams, server.ending()};
  return sendAnswer(connection, bounds, party, std::move(answer)) ? MHD_YES : MHD_NO;
}

/// The size that a client announces is refused before it is sent.
std::optional<HttpAnswer> refuseSize(const HttpHead& head, const ServerSettings& settings) {
  const std::string length = head.header("Content-Length");
  std::uint64_t bytes = 0;
  std::from_chars(length.data(), length.data() + length.size(), bytes);
  if (bytes <= settings.requestBytes) return std::nullopt;
  return httpError(413);
}

/// A request whose head is there gets a place among those of its party. While nobody knows who it is from, it
/// has one among those of its client.
MHD_Result begin(HttpServer& server, MHD_Connection* connection, const HttpHead& head, void** state) {
  HttpBounds& bounds = server.bounds();
  Router& router = server.router();
  Party party = router.partyOf(head);
  const auto refuse = [&](HttpAnswer answer) { return send(server, connection, party, std::move(answer)); };
  if (auto refusal = router.refuse(head)) return refuse(std::move(*refusal));
  if (auto refusal = refuseSize(head, bounds.settings)) return refuse(std::move(*refusal));
  auto exchange = std::make_unique<Exchange>(server, std::nullopt, party);
  if (!exchange->begin()) return refuse(busy(kWhenFull));
  server.connections().work(socketOf(connection));
  Router::Admission admission = router.admit(head);
  if (admission.refusal) return refuse(std::move(*admission.refusal));
  if (admission.user) {
    party = {Party::Kind::User, admission.user->name};
    exchange = std::make_unique<Exchange>(server, std::move(admission.user), party);
    if (!exchange->begin()) return refuse(busy(kWhenFull));
  }
  *state = exchange.release();
  return MHD_YES;
}

MHD_Result finish(HttpServer& server, MHD_Connection* connection, const HttpHead& head,
                  const Exchange& exchange) {
  const int socket = socketOf(connection);
  const auto requestTime = server.bounds().settings.requestTime;
  server.connections().allow(socket, std::chrono::seconds(0));
  HttpAnswer answer = exchange.refusal() ? httpError(exchange.refusal())
                                         : server.router().handle(head, exchange.user, exchange.body());
  const bool streams = answer.stream != nullptr;
  if (!streams) server.connections().allow(socket, requestTime * kTimesForAnswer);
  // From now on, without a byte that the client takes.
  const auto patience = static_cast<unsigned>(requestTime.count());
  MHD_set_connection_option(connection, MHD_CONNECTION_OPTION_TIMEOUT,
                            streams ? kHeartbeatSeconds + patience : patience);
  return send(server, connection, exchange.party(), std::move(answer));
}

MHD_Result onAccess(void* server, MHD_Connection* connection, const char* path, const char* method,
                    const char*, const char* data, std::size_t* size, void** state) {
  HttpServer& self = *static_cast<HttpServer*>(server);
  try {
    if (!*state) {
      HttpHead head = headOf(connection, method, path);
      head.certificate = certificateOf(self, connection);
      return begin(self, connection, head, state);
    }
    Exchange& exchange = *static_cast<Exchange*>(*state);
    if (*size == 0) return finish(self, connection, headOf(connection, method, path), exchange);
    exchange.take(data, *size);
    *size = 0;
    return MHD_YES;
  } catch (const std::exception&) {
    return MHD_NO;
  }
}

void onCompleted(void* server, MHD_Connection* connection, void** state, MHD_RequestTerminationCode) {
  delete static_cast<Exchange*>(*state);
  *state = nullptr;
  HttpServer& self = *static_cast<HttpServer*>(server);
  MHD_set_connection_option(connection, MHD_CONNECTION_OPTION_TIMEOUT, 0U);
  self.connections().wait(socketOf(connection), self.bounds().settings.requestTime);
}

void onConnection(void* server, MHD_Connection* connection, void**, MHD_ConnectionNotificationCode code) {
  HttpServer& self = *static_cast<HttpServer*>(server);
  const int socket = socketOf(connection);
  if (code != MHD_CONNECTION_NOTIFY_STARTED) return self.connections().remove(socket);
  try {
    self.connections().add(socket, clientOf(connection).client, self.bounds().settings.requestTime);
  } catch (const std::exception&) {
    shutdown(socket, SHUT_RDWR);  // there is no memory to remember it
  }
}

}  // namespace

HttpServer::HttpServer(BoundSocket listener, Router& router, HttpBounds& bounds,
                       std::optional<Certificate> certificate)
    : _router(router),
      _bounds(bounds),
      _connections(bounds.settings.connections, bounds.settings.connectionsPerAddress),
      _requests(bounds.settings.connections),
      _address(listener.address),
      _certificate(std::move(certificate)),
      _ending(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  std::vector<MHD_OptionItem> options;
  if (_certificate) {
    options = {{MHD_OPTION_HTTPS_MEM_CERT, 0, _certificate->certificate.data()},
               {MHD_OPTION_HTTPS_MEM_KEY, 0, _certificate->key.data()},
               {MHD_OPTION_HTTPS_PRIORITIES, 0, const_cast<char*>(kCiphers)}};
    std::string& authority = _certificate->clientAuthority;
    if (!authority.empty()) options.push_back({MHD_OPTION_HTTPS_MEM_TRUST, 0, authority.data()});
  }
  options.push_back({MHD_OPTION_END, 0, nullptr});
  const unsigned flags = MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_THREAD_PER_CONNECTION | MHD_USE_POLL |
                         MHD_USE_ITC | (_certificate ? static_cast<unsigned>(MHD_USE_TLS) : 0U);
  const ServerSettings& settings = bounds.settings;
  // The library closes the socket, whatever becomes of the daemon, so it gets one of its own.
  const int socket = dup(listener.socket.get());
  _daemon = MHD_start_daemon(
      flags, 0, nullptr, nullptr, onAccess, this, MHD_OPTION_LISTEN_SOCKET, socket,
      MHD_OPTION_CONNECTION_LIMIT, settings.connections + kLeaving, MHD_OPTION_CONNECTION_MEMORY_LIMIT,
      kHeadBytes, MHD_OPTION_THREAD_STACK_SIZE, kThreadStack, MHD_OPTION_NOTIFY_COMPLETED, onCompleted, this,
      MHD_OPTION_NOTIFY_CONNECTION, onConnection, this, MHD_OPTION_ARRAY, options.data(), MHD_OPTION_END);
  if (!_daemon) throw ManagerError("cannot serve at " + _address);
}

void HttpServer::quiesce() {
  endStreams();
  _quiesced = ZEB::FileDescriptor(MHD_quiesce_daemon(_daemon));
}

void HttpServer::endStreams() {
  eventfd_write(_ending.get(), 1);
}

HttpServer::~HttpServer() {
  endStreams();
  MHD_stop_daemon(_daemon);
}

}  // namespace ZebManager
