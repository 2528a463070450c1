// Memory for a process that answers again and again.
#pragma once

namespace ZebManager {

/// Has this process keep what an answer took for the next one, up to some dozens of MiB: where thousands of
/// instances are asked for every few seconds, a quarter of the time went into giving memory back to the
/// kernel and asking for it again, page by page. To be called before there are threads.
void keepMemory();

}  // namespace ZebManager
