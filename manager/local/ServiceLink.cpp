#include "local/ServiceLink.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <climits>

#include "local/LocalSocket.h"
#include "local/RunFolder.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr char kGone[] = "the service has ended the connection";

}  // namespace

std::unique_ptr<ServiceLink> ServiceLink::find(const std::string& runFolder) {
  if (runFolder.empty()) return nullptr;
  ZEB::FileDescriptor socket = connectLocally(serviceSocket(runFolder));
  return socket ? std::unique_ptr<ServiceLink>(new ServiceLink(std::move(socket))) : nullptr;
}

ServiceLink::ServiceLink(ZEB::FileDescriptor socket)
    : _socket(std::move(socket)), _woken(eventfd(0, EFD_CLOEXEC)) {}

/// A service that has no time for this connection says so before it ends it: what comes is read in any case.
void ServiceLink::send(Frame::Kind kind, std::string body, std::uint64_t number) {
  FrameSender(_socket.get()).send({kind, number, std::move(body)});
}

Frame ServiceLink::receive() {
  try {
    for (;;) {
      if (auto frame = _reader.next()) {
        if (frame->kind == Frame::Kind::Refusal) throw ManagerError(frame->body);
        return std::move(*frame);
      }
      if (_reader.receive(_socket.get()) == Transfer::Ended) throw ManagerError(kGone);
    }
  } catch (const FrameError& error) {
    throw ManagerError(std::string("the service sent ") + error.what());
  }
}

std::string ServiceLink::ask(const std::string& request) {
  send(Frame::Kind::Perform, request);
  return receive().body;
}

std::string ServiceLink::recording() {
  return ask(kAskForRecording);
}

std::string ServiceLink::pathOf(const std::string& name, bool again) {
  send(Frame::Kind::Name, name, again ? 1 : 0);
  return receive().body;
}

void ServiceLink::subscribe(const std::string& query) {
  send(Frame::Kind::Filters, packTexts({"", query, "WQL"}));
  receive();
}

std::optional<std::string> ServiceLink::next(std::chrono::milliseconds patience) {
  auto frame = _reader.next();
  if (!frame) {
    std::array<pollfd, 2> watched = {{{_socket.get(), POLLIN, 0}, {_woken.get(), POLLIN, 0}}};
    const auto wait = static_cast<int>(std::min<std::chrono::milliseconds::rep>(patience.count(), INT_MAX));
    if (poll(watched.data(), watched.size(), wait) <= 0 || watched[1].revents != 0) return std::nullopt;
    frame = receive();
  }
  if (frame->kind == Frame::Kind::Refusal) throw ManagerError(frame->body);
  const auto texts = unpackTexts(frame->body);
  return texts.empty() ? std::string() : texts.back();
}

void ServiceLink::wake() {
  eventfd_write(_woken.get(), 1);
}

}  // namespace ZebManager
