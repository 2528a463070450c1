#include "alertmanager/AlertmanagerCheck.h"

#include "alertmanager/Alertmanager.h"
#include "alertmanager/Credentials.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr std::chrono::seconds kPatience(5);

CURLcode resultOf(CURLM* multi) {
  for (;;) {
    int running = 0;
    int left = 0;
    curl_multi_perform(multi, &running);
    while (const CURLMsg* const message = curl_multi_info_read(multi, &left)) {
      if (message->msg == CURLMSG_DONE) return message->data.result;
    }
    curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
  }
}

}  // namespace

std::string troubleWithAlertmanager(const AlertmanagerSettings& settings, const std::string& url) {
  const PostSettings posts{.connectTimeout = kPatience,
                           .answerTimeout = kPatience,
                           .trustedCertificates = settings.trustedCertificates};
  try {
    const Multi multi = newMulti();
    Alertmanager one(multi.get(), posts, url);
    one.beginRound({0, {}}, authorizationIn(settings.credentials));
    one.post().begin("[]");
    const Alertmanager::Failure failure = one.conclude(resultOf(multi.get()));
    return failure.reason.empty() ? "" : failure.reason + "; " + failure.advice;
  } catch (const ManagerError& error) {
    return error.what();
  }
}

}  // namespace ZebManager
