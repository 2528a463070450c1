// Threads of the provider that may call the broker.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "values/Objects.h"

namespace ZebManager {

/// Each prepared context serves for one attachment and is gone with the detachment. What an attached thread
/// makes lives until it detaches, unless it stands between mark and release. Safe from any thread.
class AttachedThreads {
 public:
  /// A context for a thread that is going to attach, with the entries of the given one.
  CMPIContext* prepare(const Context& context);
  CMPIStatus attach(const CMPIContext* prepared);
  CMPIStatus detach(const CMPIContext* prepared);

 private:
  struct Attachment {
    Arena context;
    Arena memory;
    bool attached = false;
  };

  std::mutex _mutex;
  std::map<const CMPIContext*, std::unique_ptr<Attachment>> _attachments;
};

}  // namespace ZebManager
