#pragma once

namespace ZebBench {

/// How many dumps this process has asked the kernel for over netlink.
int dumpsAskedFor();

}  // namespace ZebBench
