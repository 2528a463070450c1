// HTTP and HTTPS.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "server/Certificate.h"
#include "server/Connections.h"
#include "server/ListeningSocket.h"
#include "server/Router.h"
#include "server/SharedBound.h"

struct MHD_Daemon;

namespace ZebManager {

/// What all servers of a process share.
struct HttpBounds {
  explicit HttpBounds(const ServerSettings& all)
      : settings(all),
        waitingBytes(all.waitingBytes),
        answerBytes(all.answerBytes),
        streams(all.connections / kForStreams) {}

  /// The part of all connections that answers without an end may have.
  static constexpr std::size_t kForStreams = 2;

  const ServerSettings& settings;
  SharedBound waitingBytes;  ///< of bodies that are under way
  SharedBound answerBytes;   ///< of answers that their clients have not taken yet
  SharedBound streams;       ///< answers that are made while they are sent
};

/// Serves one socket with a thread for each connection, whose number is bounded, until it goes; then it waits
/// for the operations that are under way.
class HttpServer {
 public:
  /// Without a certificate it is plain HTTP. Throws ManagerError.
  HttpServer(BoundSocket listener, Router& router, HttpBounds& bounds,
             std::optional<Certificate> certificate);
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;
  ~HttpServer();

  /// Takes no more connections, and ends streams. To be called once.
  void quiesce();

  const std::string& address() const { return _address; }

  Router& router() { return _router; }
  HttpBounds& bounds() { return _bounds; }
  Connections& connections() { return _connections; }
  const SharedBound& requests() const { return _requests; }
  SharedBound& requests() { return _requests; }
  /// Readable from when streams have to end.
  int ending() const { return _ending.get(); }

 private:
  void endStreams();

  Router& _router;
  HttpBounds& _bounds;
  Connections _connections;
  SharedBound _requests;  ///< that are under way, from their head until their answer is taken
  std::string _address;
  std::optional<Certificate> _certificate;
  ZEB::FileDescriptor _ending;
  MHD_Daemon* _daemon = nullptr;
  ZEB::FileDescriptor _quiesced;  ///< the socket that it listened at, which the library still watches
};

}  // namespace ZebManager
