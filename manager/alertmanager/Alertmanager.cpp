#include "alertmanager/Alertmanager.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr std::size_t kMostAtOnce = 200;

std::string addressOf(std::string url) {
  while (url.ends_with('/')) url.pop_back();
  return url + "/api/v2/alerts";
}

struct Advice {
  long from, to;  ///< of the status
  const char* text;
};

constexpr std::array kAdvice = {
    Advice{300, 399, "redirections are not followed: 'alertmanager.urls' has to name where it leads"},
    Advice{401, 403, "'alertmanager.credentials' has to name a file with what it takes"},
    Advice{404, 405, "'alertmanager.urls' has to name an Alertmanager with API v2"},
    Advice{400, 499, "its log says more"},
    Advice{500, 599, "its log, or that of the proxy before it, says more"},
};

const char* adviceFor(long status) {
  const auto found = std::ranges::find_if(
      kAdvice, [&](const Advice& row) { return row.from <= status && status <= row.to; });
  return found == kAdvice.end() ? "'alertmanager.urls' has to name an Alertmanager" : found->text;
}

const char* adviceFor(CURLcode code) {
  switch (code) {
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
      return "'alertmanager.trusted-certificates' has to name who signed its certificate";
    case CURLE_WRITE_ERROR:
      return "'alertmanager.urls' has to name an Alertmanager";
    default:
      return "see whether it runs, and whether 'alertmanager.urls' is right";
  }
}

}  // namespace

Alertmanager::Alertmanager(CURLM* multi, const PostSettings& settings, const std::string& url)
    : _url(url), _post(multi, settings, addressOf(url), {}) {}

void Alertmanager::beginRound(AlertTable::Extract extract, const std::string& authorization) {
  HttpPost::Headers headers = {"Content-Type: application/json", "Expect:"};
  if (!authorization.empty()) headers.push_back(authorization);
  _post.setHeaders(headers);
  _alerts = std::move(extract);
  _sent = 0;
  _asked = _refused = false;
}

bool Alertmanager::hasNext() const {
  return _sent < _alerts->alerts.size() || (!_asked && !_answers);
}

std::vector<OpenAlert> Alertmanager::next() {
  const auto from = _alerts->alerts.begin() + static_cast<std::ptrdiff_t>(_sent);
  const auto count = std::min(kMostAtOnce, _alerts->alerts.size() - _sent);
  _sent += count;
  _asked = true;
  return {from, from + static_cast<std::ptrdiff_t>(count)};
}

bool Alertmanager::endRound() {
  if (!_refused) _known = _alerts->revision;
  _alerts.reset();
  return !_refused;
}

Alertmanager::Failure Alertmanager::conclude(CURLcode code) {
  constexpr long kBadRequest = 400;
  constexpr std::size_t kQuoted = 200;
  const HttpPost::Answer answer = _post.finish(code);
  _answers = false;
  if (answer.code != CURLE_OK) return {answer.reason, adviceFor(answer.code)};
  const bool empty = answer.body.find_first_not_of(" \r\n\t") == std::string::npos;
  if (answer.status >= 200 && answer.status < 300) {
    _answers = empty;
    if (empty) return {};
    return {"it answers as no Alertmanager does", "'alertmanager.urls' has to name one"};
  }
  std::string reason = "HTTP status " + std::to_string(answer.status);
  if (!empty) reason += " " + quotedForLog(answer.body.substr(0, kQuoted));
  if (answer.status == kBadRequest) _refused = true;
  return {reason, adviceFor(answer.status), answer.status == kBadRequest};
}

bool Alertmanager::postpone(const std::string& advice) {
  _post.postpone();
  return _said.insert(advice).second;
}

bool Alertmanager::recover() {
  _said.clear();
  return _post.recover() > 0;
}

}  // namespace ZebManager
