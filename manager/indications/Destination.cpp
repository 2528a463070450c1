#include "indications/Destination.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace ZebManager {
namespace {

constexpr std::size_t kLongestUrl = 2048;

/// A part of a URL; empty when it has none.
std::string partOf(CURLU* url, CURLUPart part) {
  char* text = nullptr;
  if (curl_url_get(url, part, &text, 0) != CURLUE_OK) return {};
  std::string result(text);
  curl_free(text);
  return result;
}

}  // namespace

bool isUsableDestination(const std::string& url) {
  const bool printable = std::all_of(url.begin(), url.end(), [](char c) { return c > ' ' && c < '\x7f'; });
  if (url.size() > kLongestUrl || !printable) return false;
  const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> parsed(curl_url(), curl_url_cleanup);
  if (!parsed || curl_url_set(parsed.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK) return false;
  const std::string scheme = partOf(parsed.get(), CURLUPART_SCHEME);
  return (scheme == "http" || scheme == "https") && !partOf(parsed.get(), CURLUPART_HOST).empty() &&
         partOf(parsed.get(), CURLUPART_PORT) != "0" && partOf(parsed.get(), CURLUPART_USER).empty() &&
         partOf(parsed.get(), CURLUPART_PASSWORD).empty();
}

}  // namespace ZebManager
