#include "indications/HttpPost.h"

#include <algorithm>
#include <utility>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr std::size_t kLongestAnswer = 1U << 16;
constexpr std::size_t kLongestHead = 1U << 16;

}  // namespace

Multi newMulti() {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  Multi multi(ready == CURLE_OK ? curl_multi_init() : nullptr);
  if (!multi) throw ManagerError("the library for exports cannot be used");
  return multi;
}

HttpPost::HttpPost(CURLM* multi, const PostSettings& settings, std::string url, const Headers& headers)
    : _multi(multi), _settings(settings), _url(std::move(url)), _easy(curl_easy_init()) {
  if (!_easy) throw ManagerError("no memory for a listener");
  prepare();
  trust();
  setHeaders(headers);
}

HttpPost::~HttpPost() {
  if (_sending) curl_multi_remove_handle(_multi, _easy.get());
}

void HttpPost::prepare() {
  CURL* const easy = _easy.get();
  curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  // Without it the end of a transfer waits for a name that does not resolve, and all others with it.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(easy, CURLOPT_PROXY, "");  // the environment does not decide where alerts go
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(easy, CURLOPT_USERAGENT, "zebcim");
  curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, _error);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, takeAnswer);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHead);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(_settings.connectTimeout.count()));
  curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(_settings.answerTimeout.count()));
}

void HttpPost::trust() {
  CURL* const easy = _easy.get();
  curl_easy_setopt(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));  // or later
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, _settings.verifyCertificates ? 1L : 0L);
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, _settings.verifyCertificates ? 2L : 0L);
  if (!_settings.trustedCertificates.empty()) {
    curl_easy_setopt(easy, CURLOPT_CAINFO, _settings.trustedCertificates.c_str());
  }
}

void HttpPost::setUrl(const std::string& url) {
  if (url == _url) return;
  _url = url;
  _failures = 0;
  _due = Clock::time_point::min();
}

void HttpPost::setHeaders(const Headers& headers) {
  std::unique_ptr<curl_slist, Cleanup> list;
  for (const std::string& header : headers) {
    curl_slist* const longer = curl_slist_append(list.get(), header.c_str());
    if (!longer) throw ManagerError("no memory for a listener");
    static_cast<void>(list.release());  // it is in the longer one
    list.reset(longer);
  }
  curl_easy_setopt(_easy.get(), CURLOPT_HTTPHEADER, list.get());
  _headers = std::move(list);
}

std::size_t HttpPost::takeAnswer(char* bytes, std::size_t size, std::size_t count, void* post) {
  std::string& answer = static_cast<HttpPost*>(post)->_answer;
  if (answer.size() + size * count > kLongestAnswer) return 0;  // ends the transfer
  answer.append(bytes, size * count);
  return size * count;
}

/// Of the lines before the body, and of those behind it, which may go on for ever as well.
std::size_t HttpPost::takeHead(char*, std::size_t size, std::size_t count, void* post) {
  std::size_t& bytes = static_cast<HttpPost*>(post)->_headBytes;
  bytes += size * count;
  return bytes > kLongestHead ? 0 : size * count;
}

void HttpPost::begin(std::string message) {
  _message = std::move(message);
  _answer.clear();
  _headBytes = 0;
  _error[0] = '\0';
  CURL* const easy = _easy.get();
  curl_easy_setopt(easy, CURLOPT_URL, _url.c_str());
  curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(_message.size()));
  curl_easy_setopt(easy, CURLOPT_POSTFIELDS, _message.data());
  if (const CURLMcode code = curl_multi_add_handle(_multi, easy); code != CURLM_OK) {
    throw ManagerError(std::string("cannot begin to send: ") + curl_multi_strerror(code));
  }
  _sending = true;
}

HttpPost::Answer HttpPost::finish(CURLcode code) {
  curl_multi_remove_handle(_multi, _easy.get());
  _sending = false;
  if (code == CURLE_WRITE_ERROR) return {.code = code, .reason = "its answer is too long"};
  if (code != CURLE_OK)
    return {.code = code, .reason = oneLine(_error[0] ? _error : curl_easy_strerror(code))};
  Answer answer{.body = std::move(_answer)};
  curl_easy_getinfo(_easy.get(), CURLINFO_RESPONSE_CODE, &answer.status);
  return answer;
}

bool HttpPost::postpone() {
  auto pause = _settings.firstPause;
  for (unsigned i = 0; i < _failures && pause < _settings.longestPause; ++i) pause *= 2;
  _due = Clock::now() + std::min(pause, _settings.longestPause);
  return _failures++ == 0;
}

unsigned HttpPost::recover() {
  _due = Clock::time_point::min();
  return std::exchange(_failures, 0U);
}

}  // namespace ZebManager
