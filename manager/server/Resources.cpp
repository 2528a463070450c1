#include "server/Resources.h"

#include <algorithm>

namespace ZebManager {
namespace {

constexpr char kReading[] = "GET, HEAD";
constexpr char kOfCim[] = "POST, M-POST";
/// Where clients send operations, though any other path does as well.
constexpr char kCimPath[] = "/cimom";

bool isReading(const HttpHead& head) {
  return head.method == "GET" || head.method == "HEAD";
}

bool isCim(const HttpHead& head) {
  return head.method == "POST" || head.method == "M-POST";
}

HttpAnswer notAllowed(const std::string& allowed) {
  HttpAnswer refusal = httpError(405);
  refusal.headers.emplace_back("Allow", allowed);
  return refusal;
}

bool hasBody(const HttpHead& head) {
  const std::string length = head.header("Content-Length");
  return !head.header("Transfer-Encoding").empty() || length.find_first_not_of('0') != std::string::npos;
}

}  // namespace

Resource fixedBytes(std::string_view bytes, const char* contentType) {
  return [bytes, contentType](const HttpHead&) {
    return HttpAnswer{200, std::string(bytes), {{"Content-Type", contentType}}};
  };
}

bool isForResource(const HttpHead& head, const Resources& resources) {
  return !isCim(head) || (head.path != "/" && resources.contains(head.path));
}

std::optional<HttpAnswer> refuseResource(const HttpHead& head, const Resources& resources) {
  const bool known = resources.contains(head.path);
  if (isReading(head)) {
    if (!known) return head.path == kCimPath ? notAllowed(kOfCim) : httpError(404);
    return hasBody(head) ? std::optional(httpError(413)) : std::nullopt;
  }
  if (!known) return notAllowed(kOfCim);
  return notAllowed(head.path == "/" ? std::string(kReading) + ", " + kOfCim : kReading);
}

}  // namespace ZebManager
