#include "alertmanager/AlertSender.h"

#include <algorithm>
#include <atomic>
#include <list>
#include <thread>
#include <utility>

#include "alertmanager/Alertmanager.h"
#include "alertmanager/AlertsText.h"
#include "alertmanager/Credentials.h"
#include "broker/HostName.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Clock = HttpPost::Clock;

constexpr std::chrono::milliseconds kLongestPoll = std::chrono::minutes(1);
/// Beyond the resend that fails, before what is open ends by itself.
constexpr int kLastsResends = 4;

std::map<std::string, std::string> labelsOf(const AlertmanagerSettings& settings) {
  auto labels = settings.labels;
  labels.try_emplace("instance", hostName());
  return labels;
}

PostSettings postsOf(PostSettings posts, const AlertmanagerSettings& settings) {
  posts.verifyCertificates = true;
  posts.trustedCertificates = settings.trustedCertificates;
  return posts;
}

}  // namespace

DayTime AlertSender::timeOfDay() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

/// All but the flags is the thread's alone.
class AlertSender::Worker {
 public:
  Worker(const AlertmanagerSettings& settings, const PostSettings& posts, AlertTable& table, LogLine log,
         DayClock clock)
      : _settings(settings),
        _posts(postsOf(posts, settings)),
        _labels(labelsOf(settings)),
        _table(table),
        _log(std::move(log)),
        _clock(clock),
        _multi(newMulti()) {
    for (const std::string& url : _settings.urls) _all.emplace_back(_multi.get(), _posts, url);
    _thread = std::thread([this] { run(); });
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker() {
    _stopping = true;
    wake();
    _thread.join();
  }

  void wake() { curl_multi_wakeup(_multi.get()); }

 private:
  void run();
  void work();
  bool isDue(const Alertmanager& one, Clock::time_point now) const;
  void begin(Alertmanager& one, Clock::time_point now);
  void sendNext(Alertmanager& one);
  void endRound(Alertmanager& one);
  void finishDone();
  void conclude(Alertmanager& one, CURLcode code);
  void failed(Alertmanager& one, const std::string& reason, const std::string& advice);
  void poll();

  const AlertmanagerSettings _settings;
  const PostSettings _posts;
  const std::map<std::string, std::string> _labels;
  AlertTable& _table;
  const LogLine _log;
  const DayClock _clock;
  const Multi _multi;
  std::list<Alertmanager> _all;
  std::atomic<bool> _stopping = false;
  std::thread _thread;
};

void AlertSender::Worker::run() {
  while (!_stopping) {
    work();
    poll();
  }
  _all.clear();
}

bool AlertSender::Worker::isDue(const Alertmanager& one, Clock::time_point now) const {
  if (one.inRound() || one.post().due() > now) return false;
  return one.resendAt <= now || one.known() < _table.revision();
}

void AlertSender::Worker::work() {
  finishDone();
  const auto now = Clock::now();
  for (Alertmanager& one : _all) {
    if (isDue(one, now)) begin(one, now);
  }
  int running = 0;
  curl_multi_perform(_multi.get(), &running);
  finishDone();
}

void AlertSender::Worker::begin(Alertmanager& one, Clock::time_point now) {
  const bool all = one.resendAt <= now;
  AlertTable::Extract extract = _table.since(one.known(), all);
  if (all) one.resendAt = now + _settings.resend;
  try {
    one.beginRound(std::move(extract), authorizationIn(_settings.credentials));
    sendNext(one);
  } catch (const ManagerError& error) {
    failed(one, error.what(), "");
  }
}

void AlertSender::Worker::sendNext(Alertmanager& one) {
  if (!one.hasNext()) return endRound(one);
  const std::vector<OpenAlert> alerts = one.next();
  const DayTime now = _clock();
  const auto lasts = std::chrono::milliseconds(_settings.resend) * kLastsResends;
  one.post().begin(alertsText(alerts, _labels, now, now + lasts.count()));
}

void AlertSender::Worker::endRound(Alertmanager& one) {
  if (!one.endRound()) return;
  const auto least = std::ranges::min_element(_all, {}, &Alertmanager::known);
  _table.acknowledged(least->known(), _clock());
}

void AlertSender::Worker::finishDone() {
  int left = 0;
  while (const CURLMsg* const message = curl_multi_info_read(_multi.get(), &left)) {
    const CURLcode code = message->data.result;  // the message goes with its handle
    if (message->msg != CURLMSG_DONE) continue;
    const auto one = std::ranges::find(_all, message->easy_handle,
                                       [](const Alertmanager& each) { return each.post().handle(); });
    if (one != _all.end()) conclude(*one, code);
  }
}

void AlertSender::Worker::conclude(Alertmanager& one, CURLcode code) {
  const Alertmanager::Failure failure = one.conclude(code);
  if (!failure.reason.empty() && !failure.refused) return failed(one, failure.reason, failure.advice);
  if (failure.refused && one.postpone(failure.advice))
    _log("Alertmanager " + one.url() + " refuses alerts: " + failure.reason + "; " + failure.advice);
  if (!failure.refused && !one.refused() && one.recover())
    _log("Alertmanager " + one.url() + " takes alerts again");
  try {
    sendNext(one);
  } catch (const ManagerError& error) {
    failed(one, error.what(), "");
  }
}

void AlertSender::Worker::failed(Alertmanager& one, const std::string& reason, const std::string& advice) {
  one.abandon();
  one.resendAt = Clock::time_point::min();  // it may have begun anew
  _table.acknowledged(0, _clock());
  if (one.postpone(advice))
    _log("Alertmanager " + one.url() + ": " + reason + (advice.empty() ? "" : "; " + advice) +
         "; it gets what is open when it answers");
}

/// Waits for the network, for a change of the table, or until something is due.
void AlertSender::Worker::poll() {
  const auto now = Clock::now();
  auto until = now + kLongestPoll;
  for (const Alertmanager& one : _all) {
    if (one.inRound()) continue;
    const bool changed = one.known() < _table.revision();
    until = std::clamp(changed ? one.post().due() : std::max(one.post().due(), one.resendAt), now, until);
  }
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(until - now);
  curl_multi_poll(_multi.get(), nullptr, 0, static_cast<int>(wait.count()), nullptr);
}

AlertSender::AlertSender(const AlertmanagerSettings& settings, const PostSettings& posts, AlertTable& table,
                         LogLine log, DayClock clock)
    : _worker(std::make_unique<Worker>(settings, posts, table, std::move(log), clock)) {}

AlertSender::~AlertSender() = default;

void AlertSender::wake() {
  _worker->wake();
}

}  // namespace ZebManager
