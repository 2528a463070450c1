#include "isolation/Frame.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace ZebManager {
namespace {

struct Header {
  std::uint32_t kind;
  std::uint32_t length;
  std::uint64_t number;
};
static_assert(sizeof(Header) == 16);

constexpr std::size_t kChunk = std::size_t{256} << 10;

std::string headerOf(const Frame& frame) {
  if (frame.body.size() > UINT32_MAX) throw FrameError("a frame of more than 4 GiB");
  const Header header{static_cast<std::uint32_t>(frame.kind), static_cast<std::uint32_t>(frame.body.size()),
                      frame.number};
  return {reinterpret_cast<const char*>(&header), sizeof(header)};
}

bool wouldBlock() {
  return errno == EAGAIN || errno == EWOULDBLOCK;
}

}  // namespace

Transfer FrameReader::receive(int socket) {
  if (!_chunk) _chunk = std::make_unique_for_overwrite<char[]>(kChunk);
  ssize_t got = 0;
  do {
    got = recv(socket, _chunk.get(), kChunk, 0);
  } while (got < 0 && errno == EINTR);
  if (got < 0 && wouldBlock()) return Transfer::WouldBlock;
  if (got <= 0) return Transfer::Ended;
  take(_chunk.get(), static_cast<std::size_t>(got));
  return Transfer::Done;
}

void FrameReader::take(const char* bytes, std::size_t count) {
  while (count > 0) {
    std::string& part = _header.size() < sizeof(Header) ? _header : _frame.body;
    const std::size_t wanted = &part == &_header ? sizeof(Header) - _header.size() : _missing;
    const std::size_t taken = std::min(wanted, count);
    part.append(bytes, taken);
    bytes += taken;
    count -= taken;
    if (&part == &_frame.body) {
      _missing -= taken;
    } else if (_header.size() == sizeof(Header)) {
      takeHeader();
    } else {
      return;
    }
    if (_missing > 0) continue;
    _complete.push_back(std::move(_frame));
    _frame = {};
    _header.clear();
  }
}

void FrameReader::takeHeader() {
  Header header{};
  std::memcpy(&header, _header.data(), sizeof(header));
  if (header.kind < static_cast<std::uint32_t>(Frame::Kind::Filters) ||
      header.kind > static_cast<std::uint32_t>(Frame::kLast)) {
    throw FrameError("a frame of unknown kind " + std::to_string(header.kind));
  }
  if (header.length > _longestBody) {
    throw FrameError("a frame of " + std::to_string(header.length) + " bytes, at most " +
                     std::to_string(_longestBody) + " are allowed");
  }
  _frame.kind = static_cast<Frame::Kind>(header.kind);
  _frame.number = header.number;
  _missing = header.length;
  _frame.body.reserve(_missing);
}

std::optional<Frame> FrameReader::next() {
  if (_complete.empty()) return std::nullopt;
  Frame first = std::move(_complete.front());
  _complete.pop_front();
  return first;
}

void FrameWriter::add(const Frame& frame) {
  _waiting.push_back(headerOf(frame) + frame.body);
}

Transfer FrameWriter::send(int socket) {
  while (!_waiting.empty()) {
    const std::string& first = _waiting.front();
    const ssize_t sent = ::send(socket, first.data() + _sent, first.size() - _sent, MSG_NOSIGNAL);
    if (sent < 0) {
      if (errno == EINTR) continue;
      return wouldBlock() ? Transfer::WouldBlock : Transfer::Ended;
    }
    _sent += static_cast<std::size_t>(sent);
    if (_sent < first.size()) continue;
    _waiting.pop_front();
    _sent = 0;
  }
  return Transfer::Done;
}

bool FrameSender::send(const Frame& frame) {
  std::string header = headerOf(frame);
  std::array<iovec, 2> parts = {
      {{header.data(), header.size()}, {const_cast<char*>(frame.body.data()), frame.body.size()}}};
  const std::lock_guard lock(_mutex);
  for (std::size_t part = 0; part < parts.size();) {
    msghdr message{};
    message.msg_iov = &parts[part];
    message.msg_iovlen = parts.size() - part;
    const ssize_t sent = sendmsg(_socket, &message, MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) return false;
    auto left = static_cast<std::size_t>(sent);
    for (; part < parts.size() && left >= parts[part].iov_len; ++part) left -= parts[part].iov_len;
    if (part == parts.size()) break;
    parts[part].iov_base = static_cast<char*>(parts[part].iov_base) + left;
    parts[part].iov_len -= left;
  }
  return true;
}

std::string packTexts(const std::vector<std::string>& texts) {
  std::string packed;
  for (const std::string& text : texts) {
    const std::uint64_t length = text.size();
    packed.append(reinterpret_cast<const char*>(&length), sizeof(length)).append(text);
  }
  return packed;
}

std::vector<std::string> unpackTexts(std::string_view packed) {
  std::vector<std::string> texts;
  while (!packed.empty()) {
    std::uint64_t length = 0;
    if (packed.size() < sizeof(length)) throw FrameError("a list of texts that was cut off");
    std::memcpy(&length, packed.data(), sizeof(length));
    packed.remove_prefix(sizeof(length));
    if (packed.size() < length) throw FrameError("a list of texts that was cut off");
    texts.emplace_back(packed.substr(0, length));
    packed.remove_prefix(length);
  }
  return texts;
}

}  // namespace ZebManager
