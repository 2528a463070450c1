#include "server/HttpHead.h"

#include <algorithm>

#include "schema/Caseless.h"

namespace ZebManager {
namespace {

constexpr std::string_view kMapping = "http://www.dmtf.org/cim/mapping/http/v1.0";

std::string_view trimmed(std::string_view text) {
  const auto first = std::min(text.find_first_not_of(" \t\""), text.size());
  const auto last = text.find_last_not_of(" \t\"");
  return text.substr(first, last == std::string_view::npos ? 0 : last + 1 - first);
}

std::vector<std::string_view> partsOf(std::string_view text, char separator = ';') {
  std::vector<std::string_view> parts;
  while (true) {
    const std::size_t length = std::min(text.find(separator), text.size());
    parts.push_back(trimmed(text.substr(0, length)));
    if (length == text.size()) return parts;
    text.remove_prefix(length + 1);
  }
}

/// The value of a parameter of a header; empty without one.
std::string_view parameterOf(std::string_view header, std::string_view name) {
  for (const std::string_view part : partsOf(header)) {
    const std::size_t equals = part.find('=');
    if (equals != std::string_view::npos && sameName(trimmed(part.substr(0, equals)), name)) {
      return trimmed(part.substr(equals + 1));
    }
  }
  return {};
}

bool isXml(const std::string& contentType) {
  const std::string_view type = partsOf(contentType).front();
  const std::string_view charset = parameterOf(contentType, "charset");
  return (sameName(type, "application/xml") || sameName(type, "text/xml")) &&
         (charset.empty() || sameName(charset, "utf-8"));
}

/// Clients write some characters of these headers as %XX.
std::string unescaped(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto digit = [&](std::size_t at) {
      return std::string_view("0123456789abcdef").find(foldCase(text[at]));
    };
    if (text[i] == '%' && i + 2 < text.size() && digit(i + 1) < 16 && digit(i + 2) < 16) {
      out += static_cast<char>(digit(i + 1) * 16 + digit(i + 2));
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out;
}

bool isNoToken(const std::string& name) {
  return name.empty() || std::any_of(name.begin(), name.end(), [](unsigned char c) {
           return c <= ' ' || c >= 0x7f ||
                  std::string_view("\"(),/:;<=>?@[\\]{}").find(static_cast<char>(c)) !=
                      std::string_view::npos;
         });
}

bool namesSpace(std::string_view object, std::string_view nameSpace, bool intrinsic) {
  while (object.starts_with('/')) object.remove_prefix(1);
  if (intrinsic) return sameName(object, nameSpace);
  return object.size() > nameSpace.size() && object[nameSpace.size()] == ':' &&
         sameName(object.substr(0, nameSpace.size()), nameSpace);
}

}  // namespace

std::string HttpHead::prefix() const {
  if (method != "M-POST") return {};
  const std::string declarations = header("Man");
  for (const std::string_view declaration : partsOf(declarations, ',')) {
    if (partsOf(declaration).front() != kMapping) continue;
    const std::string_view number = parameterOf(declaration, "ns");
    const bool digits =
        std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (digits && !number.empty()) return std::string(number) + "-";
  }
  return {};
}

HttpAnswer httpError(unsigned status, const std::string& cimError, const std::string& why) {
  HttpAnswer refusal{status, why.empty() ? "" : why + "\n", {{"Content-Type", "text/plain; charset=utf-8"}}};
  if (!cimError.empty()) refusal.headers.emplace_back("CIMError", cimError);
  if (status == 401) refusal.headers.emplace_back("WWW-Authenticate", "Basic realm=\"zebcim\"");
  return refusal;
}

HttpAnswer busy(std::chrono::seconds later) {
  HttpAnswer refusal = httpError(503);
  refusal.headers.emplace_back("Retry-After", std::to_string(later.count()));
  return refusal;
}

std::optional<HttpAnswer> refuseAmbiguous(const HttpHead& head) {
  const auto refuse = [](const char* why) {
    HttpAnswer refusal = httpError(400, "", why);
    refusal.headers.emplace_back("Connection", "close");
    return refusal;
  };
  const auto times = [&](std::string_view name) {
    return std::count_if(head.names.begin(), head.names.end(),
                         [&](const std::string& own) { return sameName(own, name); });
  };
  if (std::any_of(head.names.begin(), head.names.end(), isNoToken))
    return refuse("the name of a header is none");
  for (const char* const name : {"Content-Length", "Transfer-Encoding", "Host", "Authorization"}) {
    if (times(name) > 1) return refuse("a header is there twice");
  }
  const std::string coding = head.header("Transfer-Encoding");
  if (times("Transfer-Encoding") == 0) return std::nullopt;
  if (times("Content-Length") != 0) return refuse("the length is said in two ways");
  if (!sameName(coding, "chunked")) return refuse("the transfer is encoded");
  return std::nullopt;
}

std::optional<HttpAnswer> refuseHead(const HttpHead& head) {
  if (head.method == "M-POST" && head.prefix().empty()) {
    return httpError(510, "", "Man does not name the mapping of CIM");
  }
  if (!isXml(head.header("Content-Type"))) return httpError(415, "", "expected application/xml in UTF-8");
  const std::string coding = head.header("Content-Encoding");
  if (!coding.empty() && !sameName(coding, "identity")) return httpError(415, "", "the body is encoded");
  const std::string operation = head.cimHeader("CIMOperation");
  if (operation.empty()) return httpError(400, "header-mismatch", "CIMOperation is missing");
  if (!sameName(operation, "MethodCall")) return httpError(400, "unsupported-operation");
  return std::nullopt;
}

std::optional<HttpAnswer> refuseMismatch(const HttpHead& head, const CimMessage& message) {
  if (!sameName(unescaped(head.cimHeader("CIMMethod")), message.operation)) {
    return httpError(400, "header-mismatch", "CIMMethod is not what the request says");
  }
  if (!namesSpace(unescaped(head.cimHeader("CIMObject")), message.nameSpace, message.intrinsic)) {
    return httpError(400, "header-mismatch", "CIMObject is not what the request says");
  }
  return std::nullopt;
}

HttpAnswer operationAnswer(std::string document) {
  return {200,
          std::move(document),
          {{"Content-Type", "application/xml; charset=\"utf-8\""}, {"CIMOperation", "MethodResponse"}}};
}

HttpAnswer extended(const HttpHead& head, HttpAnswer answer) {
  const std::string prefix = head.prefix();
  if (prefix.empty()) return answer;
  for (auto& [name, value] : answer.headers) {
    if (name.starts_with("CIM")) name.insert(0, prefix);
  }
  answer.headers.emplace_back("Ext", " ");  // the library sends no header without a value
  answer.headers.emplace_back("Cache-Control", "no-cache");
  answer.headers.emplace_back("Man", std::string(kMapping) + " ; ns=" + prefix.substr(0, prefix.size() - 1));
  return answer;
}

}  // namespace ZebManager
