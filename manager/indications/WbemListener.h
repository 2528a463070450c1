// One listener, and the export that is on its way to it.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "indications/DeliveryQueue.h"

namespace ZebManager {

struct DeliverySettings;

/// For use by one thread. Its transfers run in the multi handle, which has to outlive it.
class WbemListener {
 public:
  using Clock = std::chrono::steady_clock;

  WbemListener(CURLM* multi, const DeliverySettings& settings, std::string url);
  WbemListener(const WbemListener&) = delete;
  WbemListener& operator=(const WbemListener&) = delete;
  ~WbemListener();

  const std::string& url() const { return _url; }
  /// Takes effect with the next export, which is not put off any longer.
  void setUrl(const std::string& url);

  /// Begins to send; false when the indication is none that can be sent. Throws ManagerError.
  bool send(const QueuedIndication& indication);
  bool sending() const { return _sending.has_value(); }
  /// What is being sent.
  std::int64_t sent() const { return *_sending; }

  struct Outcome {
    enum class Kind { Acknowledged, Refused, Failed };
    Kind kind;
    std::string reason = {};
  };
  /// What came of the transfer that has ended with `code`.
  Outcome finish(CURLcode code);

  /// After a failure: puts the next attempt off, each time longer. True when it is the first in a row.
  bool postpone();
  /// After a success: the number of failures before it.
  unsigned recover();
  Clock::time_point due() const { return _due; }
  CURL* handle() const { return _easy.get(); }

 private:
  struct Cleanup {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };

  static std::size_t takeAnswer(char* bytes, std::size_t size, std::size_t count, void* listener);
  static std::size_t takeHead(char* bytes, std::size_t size, std::size_t count, void* listener);
  void prepare();
  Outcome judge(CURLcode code) const;

  CURLM* const _multi;
  const DeliverySettings& _settings;
  std::string _url;
  std::unique_ptr<CURL, Cleanup> _easy;
  std::unique_ptr<curl_slist, Cleanup> _headers;
  std::string _request;
  std::string _answer;
  std::size_t _headBytes = 0;
  char _error[CURL_ERROR_SIZE] = {};
  std::optional<std::int64_t> _sending;
  unsigned _failures = 0;
  Clock::time_point _due = Clock::time_point::min();
};

}  // namespace ZebManager
