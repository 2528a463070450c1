// What doctor makes of a kernel's answer to the question for ethtool's family.
#include <gtest/gtest.h>
#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "cli/EthtoolFamily.h"
#include "posix/FileDescriptor.h"

namespace ZebManager {
namespace {

struct Error {
  nlmsghdr head{};
  nlmsgerr body{};
};

Error errorOf(int number) {
  Error error;
  error.head.nlmsg_len = sizeof error;
  error.head.nlmsg_type = NLMSG_ERROR;
  error.body.error = number;
  return error;
}

/// The answer has arrived before the question is asked.
EthtoolFamily askWith(const void* answer, std::size_t size) {
  std::array<int, 2> ends{};
  EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()), 0);
  const ZEB::FileDescriptor kernel(ends[0]);
  const ZEB::FileDescriptor own(ends[1]);
  EXPECT_EQ(send(kernel.get(), answer, size, 0), static_cast<ssize_t>(size));
  return askForEthtool(own.get());
}

TEST(EthtoolFamilyTest, AKernelThatDoesNotKnowTheNameHasNone) {
  const Error unknown = errorOf(-ENOENT);
  EXPECT_EQ(askWith(&unknown, sizeof unknown), EthtoolFamily::Missing);
}

TEST(EthtoolFamilyTest, OtherErrorsSayNothing) {
  const Error refused = errorOf(-EPERM);
  EXPECT_EQ(askWith(&refused, sizeof refused), EthtoolFamily::Unknown);
  EXPECT_EQ(askWith("x", 1), EthtoolFamily::Unknown);
  EXPECT_EQ(askWith(&refused, sizeof(nlmsghdr)), EthtoolFamily::Unknown);
}

TEST(EthtoolFamilyTest, AFamilyIsOne) {
  nlmsghdr family{};
  family.nlmsg_len = sizeof family;
  family.nlmsg_type = GENL_ID_CTRL;
  EXPECT_EQ(askWith(&family, sizeof family), EthtoolFamily::There);
}

TEST(EthtoolFamilyTest, TheKernelAnswers) {
  EXPECT_NE(ethtoolOfKernel(), EthtoolFamily::Unknown);
}

}  // namespace
}  // namespace ZebManager
