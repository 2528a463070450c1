#include "server/Outgoing.h"

#include <microhttpd.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>

namespace ZebManager {
namespace {

constexpr std::chrono::seconds kWhenStreaming{30};
constexpr std::size_t kBlock = 32U << 10;

/// An answer until its client has it.
struct Outgoing {
  Share share;
  Share place;  // among the streams
  std::string text;
  std::size_t given = 0;  // of the text
  std::shared_ptr<ByteStream> stream;
  int socket;
  int ending;
};

/// Until there are bytes. False when there will be none.
bool waitForBytes(Outgoing& outgoing) {
  enum : std::size_t { kClient, kEnding, kBytes };
  std::array<pollfd, 3> watched = {
      {{outgoing.socket, POLLRDHUP, 0}, {outgoing.ending, POLLIN, 0}, {outgoing.stream->ready(), POLLIN, 0}}};
  const int came = poll(watched.data(), watched.size(), static_cast<int>(kHeartbeatSeconds * 1000));
  if (came < 0) return errno == EINTR;
  if (watched[kClient].revents != 0 || watched[kEnding].revents != 0) return false;
  if (came == 0) outgoing.text = outgoing.stream->heartbeat();
  if (watched[kBytes].revents != 0 && !outgoing.stream->takeInto(outgoing.text)) outgoing.stream.reset();
  return true;
}

ssize_t give(void* answer, std::uint64_t, char* buffer, std::size_t most) {
  Outgoing& outgoing = *static_cast<Outgoing*>(answer);
  try {
    while (outgoing.given == outgoing.text.size()) {
      outgoing.text.clear();
      outgoing.given = 0;
      if (!outgoing.stream || !waitForBytes(outgoing)) return MHD_CONTENT_READER_END_OF_STREAM;
    }
    const std::size_t count = std::min(most, outgoing.text.size() - outgoing.given);
    outgoing.text.copy(buffer, count, outgoing.given);
    outgoing.given += count;
    return static_cast<ssize_t>(count);
  } catch (const std::exception&) {
    return MHD_CONTENT_READER_END_WITH_ERROR;
  }
}

void release(void* sent) {
  delete static_cast<Outgoing*>(sent);
}

MHD_Response* responseOf(Outgoing& outgoing) {
  if (outgoing.stream)
    return MHD_create_response_from_callback(MHD_SIZE_UNKNOWN, kBlock, give, &outgoing, release);
  return MHD_create_response_from_buffer_with_free_callback_cls(outgoing.text.size(), outgoing.text.data(),
                                                                release, &outgoing);
}

}  // namespace

bool sendAnswer(MHD_Connection* connection, const SendingBounds& bounds, const Party& party,
                HttpAnswer answer) {
  const int socket = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
  auto outgoing = std::unique_ptr<Outgoing>(
      new Outgoing{{bounds.bytes, party}, {bounds.streams, party}, {}, 0, {}, socket, bounds.ending});
  if (answer.stream && !outgoing->place.grow(1)) answer = busy(kWhenStreaming);
  if (!outgoing->share.grow(answer.body.size())) answer = httpError(503);
  outgoing->text = std::move(answer.body);
  outgoing->stream = std::move(answer.stream);
  MHD_Response* const response = responseOf(*outgoing);
  if (!response) return false;
  (void)outgoing.release();
  for (const auto& [name, value] : answer.headers)
    MHD_add_response_header(response, name.c_str(), value.c_str());
  const MHD_Result result = MHD_queue_response(connection, answer.status, response);
  MHD_destroy_response(response);
  return result == MHD_YES;
}

}  // namespace ZebManager
