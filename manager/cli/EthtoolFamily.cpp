#include "cli/EthtoolFamily.h"

#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "posix/FileDescriptor.h"

namespace ZebManager {
namespace {

constexpr char kName[] = "ethtool";

struct Question {
  nlmsghdr head{};
  genlmsghdr generic{};
  nlattr attribute{};
  std::array<char, sizeof kName> name{};
};
static_assert(sizeof(Question) == NLMSG_HDRLEN + GENL_HDRLEN + NLA_HDRLEN + sizeof kName);

Question question() {
  Question made;
  made.head.nlmsg_len = sizeof made;
  made.head.nlmsg_type = GENL_ID_CTRL;
  made.head.nlmsg_flags = NLM_F_REQUEST;
  made.generic.cmd = CTRL_CMD_GETFAMILY;
  made.generic.version = 1;
  made.attribute.nla_len = NLA_HDRLEN + sizeof kName;
  made.attribute.nla_type = CTRL_ATTR_FAMILY_NAME;
  std::memcpy(made.name.data(), kName, sizeof kName);
  return made;
}

}  // namespace

EthtoolFamily askForEthtool(int socket) {
  const Question asked = question();
  if (send(socket, &asked, sizeof asked, 0) < 0) return EthtoolFamily::Unknown;
  std::array<char, 8192> answer{};
  const ssize_t got = recv(socket, answer.data(), answer.size(), 0);
  nlmsghdr head{};
  if (got < static_cast<ssize_t>(sizeof head)) return EthtoolFamily::Unknown;
  std::memcpy(&head, answer.data(), sizeof head);
  if (head.nlmsg_type != NLMSG_ERROR) return EthtoolFamily::There;
  int error = 0;
  if (got < static_cast<ssize_t>(sizeof head + sizeof error)) return EthtoolFamily::Unknown;
  std::memcpy(&error, answer.data() + sizeof head, sizeof error);
  return error == -ENOENT ? EthtoolFamily::Missing : EthtoolFamily::Unknown;
}

EthtoolFamily ethtoolOfKernel() {
  const ZEB::FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_GENERIC));
  sockaddr_nl kernel{};
  kernel.nl_family = AF_NETLINK;
  if (!socket || connect(socket.get(), reinterpret_cast<const sockaddr*>(&kernel), sizeof kernel) != 0)
    return EthtoolFamily::Unknown;
  const timeval patience{1, 0};
  setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  return askForEthtool(socket.get());
}

}  // namespace ZebManager
