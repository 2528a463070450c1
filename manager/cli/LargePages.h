// Memory for a process that needs much of it, and not for long.
#pragma once

namespace ZebManager {

/// Has the kernel give the heap of this process in large pages, where it has such: a tenth of the time of a
/// command with thousands of instances goes into asking for small ones. To be called before there are
/// threads.
void useLargePages();

}  // namespace ZebManager
