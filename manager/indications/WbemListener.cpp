#include "indications/WbemListener.h"

#include <utility>

#include "cimxml/Export.h"
#include "indications/ExportText.h"

namespace ZebManager {
namespace {

constexpr long kOk = 200;

const HttpPost::Headers& exportHeaders() {
  static const HttpPost::Headers kHeaders = {"Content-Type: application/xml; charset=\"utf-8\"",
                                             "CIMExport: MethodRequest", "CIMExportMethod: ExportIndication",
                                             "Accept: application/xml, text/xml", "Expect:"};
  return kHeaders;
}

}  // namespace

WbemListener::WbemListener(CURLM* multi, const PostSettings& settings, std::string url)
    : HttpPost(multi, settings, std::move(url), exportHeaders()) {}

bool WbemListener::send(const QueuedIndication& indication) {
  const auto element = withSequence(indication.element, indication.context, indication.number);
  if (!element) return false;
  begin(exportMessage(std::to_string(indication.id), *element));
  _sent = indication.id;
  return true;
}

WbemListener::Outcome WbemListener::conclude(CURLcode code) {
  using Kind = Outcome::Kind;
  const Answer answer = finish(code);
  if (answer.code != CURLE_OK) return {Kind::Failed, answer.reason};
  if (answer.status != kOk) return {Kind::Failed, "HTTP status " + std::to_string(answer.status)};
  const ExportAnswer read = readExportAnswer(answer.body);
  if (read.kind == ExportAnswer::Kind::Acknowledged) return {Kind::Acknowledged};
  return {read.kind == ExportAnswer::Kind::Refused ? Kind::Refused : Kind::Failed, read.reason};
}

}  // namespace ZebManager
