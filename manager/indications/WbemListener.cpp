#include "indications/WbemListener.h"

#include <algorithm>
#include <utility>

#include "cimxml/Export.h"
#include "indications/Delivery.h"
#include "indications/ExportText.h"

namespace ZebManager {
namespace {

constexpr std::size_t kLongestAnswer = 1U << 16;
constexpr std::size_t kLongestHead = 1U << 16;
constexpr long kOk = 200;

curl_slist* exportHeaders() {
  curl_slist* list = nullptr;
  for (const char* header :
       {"Content-Type: application/xml; charset=\"utf-8\"", "CIMExport: MethodRequest",
        "CIMExportMethod: ExportIndication", "Accept: application/xml, text/xml", "Expect:"}) {
    list = curl_slist_append(list, header);
  }
  return list;
}

}  // namespace

WbemListener::WbemListener(CURLM* multi, const DeliverySettings& settings, std::string url)
    : _multi(multi),
      _settings(settings),
      _url(std::move(url)),
      _easy(curl_easy_init()),
      _headers(exportHeaders()) {
  if (!_easy || !_headers) throw ManagerError("no memory for a listener");
  prepare();
}

WbemListener::~WbemListener() {
  if (_sending) curl_multi_remove_handle(_multi, _easy.get());
}

void WbemListener::prepare() {
  CURL* const easy = _easy.get();
  curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  // Without it the end of a transfer waits for a name that does not resolve, and all others with it.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(easy, CURLOPT_PROXY, "");  // the environment does not decide where alerts go
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, _headers.get());
  curl_easy_setopt(easy, CURLOPT_USERAGENT, "zebcim");
  curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, _error);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, takeAnswer);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHead);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(_settings.connectTimeout.count()));
  curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(_settings.answerTimeout.count()));
  curl_easy_setopt(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));  // or later
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, _settings.verifyListeners ? 1L : 0L);
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, _settings.verifyListeners ? 2L : 0L);
  if (!_settings.trustedCertificates.empty()) {
    curl_easy_setopt(easy, CURLOPT_CAINFO, _settings.trustedCertificates.c_str());
  }
}

void WbemListener::setUrl(const std::string& url) {
  if (url == _url) return;
  _url = url;
  _failures = 0;
  _due = Clock::time_point::min();
}

std::size_t WbemListener::takeAnswer(char* bytes, std::size_t size, std::size_t count, void* listener) {
  std::string& answer = static_cast<WbemListener*>(listener)->_answer;
  if (answer.size() + size * count > kLongestAnswer) return 0;  // ends the transfer
  answer.append(bytes, size * count);
  return size * count;
}

/// Of the lines before the body, and of those behind it, which may go on for ever as well.
std::size_t WbemListener::takeHead(char*, std::size_t size, std::size_t count, void* listener) {
  std::size_t& bytes = static_cast<WbemListener*>(listener)->_headBytes;
  bytes += size * count;
  return bytes > kLongestHead ? 0 : size * count;
}

bool WbemListener::send(const QueuedIndication& indication) {
  const auto element = withSequence(indication.element, indication.context, indication.number);
  if (!element) return false;
  _request = exportMessage(std::to_string(indication.id), *element);
  _answer.clear();
  _headBytes = 0;
  _error[0] = '\0';
  CURL* const easy = _easy.get();
  curl_easy_setopt(easy, CURLOPT_URL, _url.c_str());
  curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(_request.size()));
  curl_easy_setopt(easy, CURLOPT_POSTFIELDS, _request.data());
  if (const CURLMcode code = curl_multi_add_handle(_multi, easy); code != CURLM_OK) {
    throw ManagerError(std::string("cannot begin an export: ") + curl_multi_strerror(code));
  }
  _sending = indication.id;
  return true;
}

WbemListener::Outcome WbemListener::finish(CURLcode code) {
  curl_multi_remove_handle(_multi, _easy.get());
  _sending.reset();
  return judge(code);
}

WbemListener::Outcome WbemListener::judge(CURLcode code) const {
  using Kind = Outcome::Kind;
  if (code == CURLE_WRITE_ERROR) return {Kind::Failed, "its answer is too long"};
  if (code != CURLE_OK) return {Kind::Failed, oneLine(_error[0] ? _error : curl_easy_strerror(code))};
  long status = 0;
  curl_easy_getinfo(_easy.get(), CURLINFO_RESPONSE_CODE, &status);
  if (status != kOk) return {Kind::Failed, "HTTP status " + std::to_string(status)};
  const ExportAnswer answer = readExportAnswer(_answer);
  if (answer.kind == ExportAnswer::Kind::Acknowledged) return {Kind::Acknowledged};
  return {answer.kind == ExportAnswer::Kind::Refused ? Kind::Refused : Kind::Failed, answer.reason};
}

bool WbemListener::postpone() {
  auto pause = _settings.firstPause;
  for (unsigned i = 0; i < _failures && pause < _settings.longestPause; ++i) pause *= 2;
  _due = Clock::now() + std::min(pause, _settings.longestPause);
  return _failures++ == 0;
}

unsigned WbemListener::recover() {
  _due = Clock::time_point::min();
  return std::exchange(_failures, 0U);
}

}  // namespace ZebManager
