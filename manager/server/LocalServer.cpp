#include "server/LocalServer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "cli/ShownInstances.h"
#include "local/LocalSocket.h"
#include "local/ServiceLink.h"
#include "local/ServiceNamespace.h"
#include "login/WriteGroup.h"
#include "query/Condition.h"

namespace ZebManager {
namespace {

constexpr std::size_t kMostConnections = 64;
constexpr std::size_t kMostOfOne = 16;
constexpr std::size_t kLongestRequest = 256U << 10;
constexpr char kTooMany[] = "the service answers too many commands at once";
/// For a command to take a big answer.
constexpr int kTimesForAnswer = 30;

User userAt(int socket, const std::string& writeGroup) {
  const Peer peer = peerOf(socket);
  const std::string name = userName(peer.user);
  return {name, peer.user == 0 || isMember(name, writeGroup)};
}

/// The next frame; nothing when the connection is over.
std::optional<Frame> nextFrame(FrameReader& reader, int socket) {
  for (;;) {
    if (auto frame = reader.next()) return frame;
    if (reader.receive(socket) != Transfer::Done) return std::nullopt;
  }
}

Frame refusal(const std::string& why) {
  return {Frame::Kind::Refusal, 0, why};
}

}  // namespace

LocalServer::LocalServer(const std::string& path, Router& router, HttpBounds& bounds, LocalWatchers& watchers,
                         MetricsText metrics, std::string recording, const ClassRepository& classes)
    : _path(path),
      _listener(listenLocally(path)),
      _router(router),
      _bounds(bounds),
      _watchers(watchers),
      _metrics(std::move(metrics)),
      _recording(std::move(recording)),
      _classes(classes),
      _connections(kMostConnections + kMostOfOne, kMostConnections + kMostOfOne),
      _requests(kMostConnections + kMostOfOne),
      _thread([this] { accept(); }) {}

void LocalServer::quiesce() {
  const std::lock_guard lock(_mutex);
  if (!_closed) unlink(_path.c_str());
  _closed = true;
  shutdown(_listener.get(), SHUT_RDWR);
}

LocalServer::~LocalServer() {
  quiesce();
  std::unique_lock lock(_mutex);
  for (const auto& [socket, user] : _open) shutdown(socket, SHUT_RDWR);
  _ended.wait(lock, [this] { return _open.empty(); });
  lock.unlock();
  _thread.join();
}

void LocalServer::accept() {
  for (;;) {
    ZEB::FileDescriptor socket(accept4(_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
    const int error = errno;
    {
      const std::lock_guard lock(_mutex);
      if (_closed) return;
    }
    if (socket) {
      begin(std::move(socket));
    } else if (error == EMFILE || error == ENFILE) {
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
  }
}

bool LocalServer::admit(int socket, uid_t user) {
  const std::lock_guard lock(_mutex);
  const auto own = static_cast<std::size_t>(
      std::ranges::count(_open, user, [](const auto& entry) { return entry.second; }));
  if (_closed || own >= kMostOfOne || (user != 0 && _open.size() >= kMostConnections)) return false;
  _open.emplace(socket, user);
  return true;
}

void LocalServer::begin(ZEB::FileDescriptor socket) {
  const int number = socket.get();
  if (!admit(number, peerOf(number).user)) {
    FrameSender(number).send(refusal(kTooMany));
    return;
  }
  std::thread([this, owned = std::move(socket)]() mutable {
    const int open = owned.get();
    try {
      const User user = userAt(open, _bounds.settings.login.writeGroup);
      _connections.add(open, user.name, _bounds.settings.requestTime);
      serve(open, user);
    } catch (const std::exception&) {
      // What sends no frames gets no answer.
    }
    _connections.remove(open);
    const std::lock_guard lock(_mutex);
    _open.erase(open);
    owned = {};
    _ended.notify_all();
  }).detach();
}

void LocalServer::serve(int socket, const User& user) {
  FrameReader reader(kLongestRequest);
  FrameSender sender(socket);
  for (;;) {
    const auto frame = nextFrame(reader, socket);
    if (!frame) return;
    const Party party{Party::Kind::User, user.name};
    Share place(_requests, party);
    _connections.work(socket);
    _connections.allow(socket, Connections::Seconds(0));
    if (frame->kind == Frame::Kind::Filters) return watch(socket, *frame);
    if (frame->kind != Frame::Kind::Perform && frame->kind != Frame::Kind::Name) return;
    Frame answer = place.grow(1) ? answerTo(user, *frame) : refusal(kTooMany);
    Share share(_bounds.answerBytes, party);
    if (!share.grow(answer.body.size()))
      answer = refusal("the service has too many answers that nobody takes");
    _connections.allow(socket, _bounds.settings.requestTime * kTimesForAnswer);
    if (!sender.send(answer)) return;
    _connections.wait(socket, _bounds.settings.requestTime);
  }
}

std::string LocalServer::performed(const User& user, const std::string& request) {
  if (const auto format = metricsAskedFor(request)) return _metrics(*format);
  if (request == kAskForRecording) return _recording;
  if (shownAskedFor(request)) return _router.shown(request);
  return _router.answerTo(user, request);
}

Frame LocalServer::answerTo(const User& user, const Frame& frame) {
  try {
    if (frame.kind == Frame::Kind::Perform) return {Frame::Kind::Answer, 0, performed(user, frame.body)};
    ServiceNamespace model([&](const std::string& request) { return _router.answerTo(user, request); },
                           _classes);
    return {Frame::Kind::Answer, 0, _names.pathOf(model, frame.body, frame.number != 0)};
  } catch (const std::exception& error) {
    return refusal(error.what());
  }
}

/// Until the command is gone, or has fallen behind and got what was kept for it.
void LocalServer::watch(int socket, const Frame& frame) {
  FrameSender sender(socket);
  try {
    const std::string query = unpackTexts(frame.body).at(1);
    checkQuery(OwnedQuery(query).query(), _classes);
    const auto watcher = _watchers.add(query);
    if (!watcher) throw ManagerError("the service has too many commands that wait for alerts");
    sender.send({Frame::Kind::Ready, 0, {}});
    passOn(socket, *watcher);
    _watchers.remove(*watcher);
  } catch (const ManagerError& error) {
    sender.send(refusal(error.what()));
  }
}

void LocalServer::passOn(int socket, LocalWatcher& watcher) {
  fcntl(socket, F_SETFL, O_NONBLOCK);
  FrameWriter writer;
  for (bool more = true; more || !writer.empty();) {
    const bool idle = writer.empty();
    std::array<pollfd, 2> watched = {{{socket, static_cast<short>(idle ? POLLIN : POLLIN | POLLOUT), 0},
                                      {idle ? watcher.ready() : -1, POLLIN, 0}}};
    if (poll(watched.data(), watched.size(), -1) < 0 && errno != EINTR) return;
    if ((watched[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0) return;
    if (watched[1].revents != 0) more = watcher.takeInto(writer);
    if (writer.send(socket) == Transfer::Ended) return;
  }
}

}  // namespace ZebManager
