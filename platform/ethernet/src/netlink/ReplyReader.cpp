#include "netlink/ReplyReader.h"

#include <linux/netlink.h>

#include <cerrno>

namespace ZEB::ethernet {

ReplyReader::State ReplyReader::feed(Bytes datagram) {
  while (const auto header = leading<nlmsghdr>(datagram)) {
    if (header->nlmsg_len < sizeof *header || header->nlmsg_len > datagram.size()) {
      _error = EBADMSG;
      return State::Failed;
    }
    const Bytes payload = datagram.subspan(sizeof *header, header->nlmsg_len - sizeof *header);
    datagram = following(datagram, header->nlmsg_len);
    if (header->nlmsg_seq != _sequence) continue;
    _interrupted |= (header->nlmsg_flags & NLM_F_DUMP_INTR) != 0;
    if (header->nlmsg_type == NLMSG_DONE || header->nlmsg_type == NLMSG_ERROR) return end(payload);
    if (header->nlmsg_type >= NLMSG_MIN_TYPE) _sink(header->nlmsg_type, payload);
  }
  return State::More;
}

/// Both closing messages begin with zero or a negative errno value; a dump's may be empty on old kernels.
ReplyReader::State ReplyReader::end(Bytes payload) {
  const int code = leading<int>(payload).value_or(0);
  constexpr int kLargestError = 4095;
  if (code < 0) {
    _error = code >= -kLargestError ? -code : EBADMSG;
    return State::Failed;
  }
  return _interrupted ? State::Interrupted : State::Done;
}

}  // namespace ZEB::ethernet
