// One Alertmanager, and what is on its way to it.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "alertmanager/AlertTable.h"
#include "indications/HttpPost.h"

namespace ZebManager {

/// For use by one thread. A round brings it what it lacks, a bounded number of alerts at a time.
class Alertmanager {
 public:
  Alertmanager(CURLM* multi, const PostSettings& settings, const std::string& url);

  HttpPost& post() { return _post; }
  const HttpPost& post() const { return _post; }
  const std::string& url() const { return _url; }

  bool inRound() const { return _alerts.has_value(); }
  void beginRound(AlertTable::Extract extract, const std::string& authorization);
  /// Whether something is left to be posted; nothing at all is posted to one that is not known to answer.
  bool hasNext() const;
  std::vector<OpenAlert> next();
  /// Gives the round up.
  void abandon() { _alerts.reset(); }
  bool refused() const { return _refused; }
  /// Everything has been posted. Whether all of it was taken.
  bool endRound();

  /// Why the last post did not bring what it should, with what to do; empty when it did. One that was
  /// refused does not keep others of the same round back.
  struct Failure {
    std::string reason = {};
    std::string advice = {};
    bool refused = false;
  };
  Failure conclude(CURLcode code);

  /// Puts the next attempt off. Whether that has to be said: it was not since somebody took alerts last.
  bool postpone(const std::string& advice);
  /// After a success: whether there was a failure before.
  bool recover();

  /// Revision up to which it knows everything.
  std::uint64_t known() const { return _known; }

  HttpPost::Clock::time_point resendAt = HttpPost::Clock::time_point::min();

 private:
  const std::string _url;
  HttpPost _post;
  std::optional<AlertTable::Extract> _alerts;
  std::size_t _sent = 0;
  bool _asked = false;  ///< in this round
  bool _refused = false;
  bool _answers = false;
  std::uint64_t _known = 0;
  std::set<std::string> _said;  ///< advice
};

}  // namespace ZebManager
