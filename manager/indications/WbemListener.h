// One listener, and the export that is on its way to it.
#pragma once

#include <cstdint>
#include <string>

#include "indications/DeliveryQueue.h"
#include "indications/HttpPost.h"

namespace ZebManager {

/// For use by one thread.
class WbemListener : public HttpPost {
 public:
  WbemListener(CURLM* multi, const PostSettings& settings, std::string url);

  /// Begins to send; false when the indication is none that can be sent. Throws ManagerError.
  bool send(const QueuedIndication& indication);
  /// What is being sent, or was last.
  std::int64_t sent() const { return _sent; }

  struct Outcome {
    enum class Kind { Acknowledged, Refused, Failed };
    Kind kind;
    std::string reason = {};
  };
  /// What came of the export that has ended with `code`.
  Outcome conclude(CURLcode code);

 private:
  std::int64_t _sent = 0;
};

}  // namespace ZebManager
