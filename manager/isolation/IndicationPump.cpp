#include "isolation/IndicationPump.h"

#include <unistd.h>

#include <iostream>
#include <utility>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr unsigned kMostOnTheWay = 256;
constexpr std::chrono::milliseconds kLong = std::chrono::hours(1);
constexpr std::chrono::milliseconds kNoTime(0);

}  // namespace

IndicationPump::IndicationPump(HostedProvider& provider, FrameSender& sender, HandoverFile& handover)
    : _provider(provider), _sender(sender), _handover(handover), _thread([this] { run(); }) {}

IndicationPump::~IndicationPump() {
  {
    const std::lock_guard lock(_mutex);
    _closed = true;
  }
  _changed.notify_one();
  _provider.broker().indications().wake();
  _thread.join();
}

void IndicationPump::setFilters(const std::vector<IndicationFilter>& filters) {
  auto set = std::make_shared<FilterSet>(filters, _provider.broker().repository());
  bool first = false;
  {
    const std::lock_guard lock(_mutex);
    first = !std::exchange(_open, !filters.empty());
    _filters = std::move(set);
  }
  if (filters.empty()) return _provider.broker().indications().close();
  if (first) sendReported();
  _provider.broker().indications().open();
}

/// What was reported to nobody is nothing that the next process has to report.
void IndicationPump::sendReported() {
  _sender.send({Frame::Kind::Reported, 0, _handover.takeWhole()});
}

void IndicationPump::retire() {
  _provider.broker().indications().shut();
  const std::lock_guard lock(_mutex);
  _retired = true;
  _changed.notify_one();
}

void IndicationPump::taken() {
  const std::lock_guard lock(_mutex);
  if (_onTheWay > 0) --_onTheWay;
  _changed.notify_one();
}

void IndicationPump::run() {
  _threadId = gettid();
  for (bool closed = false, over = false;;) {
    if (!over && _provider.broker().indications().isOver()) {
      over = true;
      sendReported();
      _sender.send({Frame::Kind::Retired, 0, {}});
    }
    const auto delivered = _provider.broker().indications().next(closed ? kNoTime : kLong);
    if (closed && !delivered) return;
    {
      std::unique_lock lock(_mutex);
      _changed.wait(lock, [this] { return _closed || _retired || _onTheWay < kMostOnTheWay; });
      closed = _closed;
    }
    if (delivered) send(*delivered);
  }
}

void IndicationPump::send(const DeliveredIndication& delivered) {
  std::vector<std::string> texts = matching(delivered);
  if (!texts.empty()) {
    const std::lock_guard lock(_mutex);
    ++_onTheWay;
  }
  texts.insert(texts.begin(), delivered.reported);
  _sender.send({Frame::Kind::Indication, 0, packTexts(texts)});
}

/// The names of the filters that it satisfies, and the element; nothing when there is none.
std::vector<std::string> IndicationPump::matching(const DeliveredIndication& delivered) {
  try {
    const auto set = filters();
    std::vector<std::string> texts = set ? set->matching(*delivered.instance) : std::vector<std::string>();
    if (!texts.empty()) texts.push_back(_provider.instanceElement(*delivered.instance));
    return texts;
  } catch (const std::exception& error) {
    std::cerr << "zebcim: an indication is lost: " << oneLine(error.what()) << std::endl;
    return {};
  }
}

std::shared_ptr<const FilterSet> IndicationPump::filters() {
  const std::lock_guard lock(_mutex);
  return _filters;
}

}  // namespace ZebManager
