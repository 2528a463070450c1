// Commands of this machine.
#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "posix/FileDescriptor.h"
#include "server/HttpServer.h"
#include "server/LocalWatchers.h"
#include "server/MetricsResource.h"
#include "server/NameHints.h"

namespace ZebManager {

/// Serves a local socket with a thread for each connection, whose number is bounded, until it goes; then it
/// waits for what is under way. Everybody may read; root and the members of a group may write.
class LocalServer {
 public:
  /// `recording`: what is served, empty for this machine. `classes`: what alerts are selected from. Throws
  /// ManagerError when there can be no socket.
  LocalServer(const std::string& path, Router& router, HttpBounds& bounds, LocalWatchers& watchers,
              MetricsText metrics, std::string recording, const ClassRepository& classes);
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;
  ~LocalServer();

  /// Takes no more connections.
  void quiesce();
  /// Requests that are under way, from when they are there until their answer is sent.
  const SharedBound& requests() const { return _requests; }

 private:
  void accept();
  /// False when there are too many.
  bool admit(int socket, uid_t user);
  void begin(ZEB::FileDescriptor socket);
  void serve(int socket, const User& user);
  std::string performed(const User& user, const std::string& request);
  Frame answerTo(const User& user, const Frame& frame);
  void watch(int socket, const Frame& frame);
  static void passOn(int socket, LocalWatcher& watcher);

  const std::string _path;
  const ZEB::FileDescriptor _listener;
  Router& _router;
  HttpBounds& _bounds;
  LocalWatchers& _watchers;
  const MetricsText _metrics;
  const std::string _recording;
  const ClassRepository& _classes;
  NameHints _names;
  Connections _connections;
  SharedBound _requests;
  std::mutex _mutex;
  std::condition_variable _ended;
  std::map<int, uid_t> _open;  // connections
  bool _closed = false;
  std::thread _thread;
};

}  // namespace ZebManager
