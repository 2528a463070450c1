#include "isolation/IndicationPump.h"

#include <unistd.h>

#include <iostream>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr unsigned kMostOnTheWay = 256;
constexpr std::chrono::milliseconds kLong = std::chrono::hours(1);
constexpr std::chrono::milliseconds kNoTime(0);

}  // namespace

IndicationPump::IndicationPump(HostedProvider& provider, FrameSender& sender)
    : _provider(provider), _sender(sender), _thread([this] { run(); }) {}

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
  {
    const std::lock_guard lock(_mutex);
    _filters = std::move(set);
  }
  if (filters.empty()) {
    _provider.broker().indications().close();
  } else {
    _provider.broker().indications().open();
  }
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
      _sender.send({Frame::Kind::Retired, 1, {}});
    }
    const auto delivered = _provider.broker().indications().next(closed ? kNoTime : kLong);
    if (closed && !delivered) return;
    {
      std::unique_lock lock(_mutex);
      _changed.wait(lock, [this] { return _closed || _onTheWay < kMostOnTheWay; });
      closed = _closed;
    }
    if (delivered) send(*delivered);
  }
}

void IndicationPump::send(const DeliveredIndication& delivered) {
  try {
    const auto set = filters();
    std::vector<std::string> texts = set ? set->matching(*delivered.instance) : std::vector<std::string>();
    if (texts.empty()) return;
    texts.push_back(_provider.instanceElement(*delivered.instance));
    {
      const std::lock_guard lock(_mutex);
      ++_onTheWay;
    }
    _sender.send({Frame::Kind::Indication, 0, packTexts(texts)});
  } catch (const std::exception& error) {
    std::cerr << "zebcim: an indication is lost: " << oneLine(error.what()) << std::endl;
  }
}

std::shared_ptr<const FilterSet> IndicationPump::filters() {
  const std::lock_guard lock(_mutex);
  return _filters;
}

}  // namespace ZebManager
