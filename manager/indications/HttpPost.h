// One address that messages are posted to, and the one that is on its way.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "indications/PostSettings.h"

namespace ZebManager {

/// A multi handle, in which transfers of one thread run. Throws ManagerError when there can be none.
struct EndMulti {
  void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
using Multi = std::unique_ptr<CURLM, EndMulti>;
Multi newMulti();

/// For use by one thread. Its transfers run in the multi handle, which has to outlive it, as the settings
/// have. Redirections are not followed, TLS is 1.2 or later, and of an answer no more is read than an honest
/// one has.
class HttpPost {
 public:
  using Clock = std::chrono::steady_clock;
  using Headers = std::vector<std::string>;

  HttpPost(CURLM* multi, const PostSettings& settings, std::string url, const Headers& headers);
  HttpPost(const HttpPost&) = delete;
  HttpPost& operator=(const HttpPost&) = delete;
  ~HttpPost();

  const std::string& url() const { return _url; }
  /// Takes effect with the next message, which is not put off any longer.
  void setUrl(const std::string& url);
  /// Takes effect with the next message.
  void setHeaders(const Headers& headers);

  /// Throws ManagerError.
  void begin(std::string message);
  bool sending() const { return _sending; }

  struct Answer {
    CURLcode code = CURLE_OK;  ///< otherwise there is only a reason
    long status = 0;
    std::string body = {};
    std::string reason = {};
  };
  /// What came of the transfer that has ended with `code`.
  Answer finish(CURLcode code);

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

  static std::size_t takeAnswer(char* bytes, std::size_t size, std::size_t count, void* post);
  static std::size_t takeHead(char* bytes, std::size_t size, std::size_t count, void* post);
  void prepare();
  void trust();

  CURLM* const _multi;
  const PostSettings& _settings;
  std::string _url;
  std::unique_ptr<CURL, Cleanup> _easy;
  std::unique_ptr<curl_slist, Cleanup> _headers;
  std::string _message;
  std::string _answer;
  std::size_t _headBytes = 0;
  char _error[CURL_ERROR_SIZE] = {};
  bool _sending = false;
  unsigned _failures = 0;
  Clock::time_point _due = Clock::time_point::min();
};

}  // namespace ZebManager
