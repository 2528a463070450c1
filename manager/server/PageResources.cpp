#include "server/PageResources.h"

#include <nlohmann/json.hpp>

#include "page/InstanceText.h"
#include "page/PageFiles.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

/// Nothing but what this server has sent is loaded, asked or run, and nobody shows the page inside another.
constexpr char kPolicy[] =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'; require-trusted-types-for 'script'; "
    "trusted-types 'none'";

HttpAnswer answerOf(unsigned status, std::string_view type, std::string body) {
  return {status,
          std::move(body),
          {{"Content-Type", std::string(type)},
           {"Content-Security-Policy", kPolicy},
           {"Cross-Origin-Resource-Policy", "same-origin"},
           {"Cross-Origin-Opener-Policy", "same-origin"},
           {"X-Content-Type-Options", "nosniff"},
           {"Referrer-Policy", "no-referrer"},
           {"Cache-Control", "no-cache"}}};
}

HttpAnswer jsonAnswer(unsigned status, std::string body) {
  return answerOf(status, "application/json", std::move(body));
}

HttpAnswer jsonError(unsigned status, const char* why) {
  const nlohmann::json json = {{"error", why}};
  return jsonAnswer(status, json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

class PageStream : public ByteStream {
 public:
  explicit PageStream(std::shared_ptr<EventQueue> events) : _events(std::move(events)) {}

  int ready() const override { return _events->ready(); }
  bool takeInto(std::string& bytes) override { return _events->takeInto(bytes); }
  std::string_view heartbeat() const override { return ":\n\n"; }

 private:
  const std::shared_ptr<EventQueue> _events;
};

HttpAnswer eventsFor(const HttpHead& head, LiveModel& live) {
  HttpAnswer answer = answerOf(200, "text/event-stream", "retry: 1000\n\n");
  if (head.method == "GET")
    answer.stream = std::make_shared<PageStream>(live.open(head.header("Last-Event-ID")));
  return answer;
}

HttpAnswer instanceFor(const HttpHead& head, Namespace& model) {
  try {
    return jsonAnswer(200, jsonOfInstance(model, head.argument("path")));
  } catch (const ManagerError& error) {
    return jsonError(404, error.what());
  }
}

HttpAnswer explanationFor(const HttpHead& head, Explanations& explanations) {
  try {
    auto json = explanations.of(head.argument("path"));
    return json ? jsonAnswer(200, std::move(*json)) : jsonAnswer(202, "{}");
  } catch (const ManagerError& error) {
    return jsonError(404, error.what());
  }
}

}  // namespace

void addPage(Resources& resources, LiveModel& live, Namespace& model, Explanations& explanations) {
  for (const PageFile& file : pageFiles()) {
    resources.emplace(file.path,
                      [&file](const HttpHead&) { return answerOf(200, file.type, std::string(file.bytes)); });
  }
  resources.emplace("/events", [&live](const HttpHead& head) { return eventsFor(head, live); });
  resources.emplace("/explain",
                    [&explanations](const HttpHead& head) { return explanationFor(head, explanations); });
  resources.emplace("/instance", [&model](const HttpHead& head) { return instanceFor(head, model); });
}

}  // namespace ZebManager
