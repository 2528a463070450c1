#include "isolation/Subscriptions.h"

#include <algorithm>
#include <iostream>

#include "query/Condition.h"

namespace ZebManager {

Subscriptions::~Subscriptions() {
  {
    const std::lock_guard lock(_mutex);
    _closed = true;
  }
  _changed.notify_one();
  _thread.join();
}

void Subscriptions::set(const std::vector<IndicationFilter>& filters) {
  std::vector<std::string> queries;
  queries.reserve(filters.size());
  for (const IndicationFilter& filter : filters) queries.push_back(filter.query);
  const std::lock_guard lock(_mutex);
  _wanted = std::move(queries);
  _changed.notify_one();
}

void Subscriptions::run() {
  std::unique_lock lock(_mutex);
  for (;;) {
    _changed.wait(lock, [this] { return _closed || _wanted; });
    if (_closed) return;
    const std::vector<std::string> queries = std::move(*_wanted);
    _wanted.reset();
    lock.unlock();
    apply(queries);
    lock.lock();
  }
}

/// What is new comes before what goes, so that a plug-in that has a listener all the while notices no gap.
void Subscriptions::apply(const std::vector<std::string>& queries) {
  for (const std::string& query : queries) {
    if (!_active.contains(query)) activate(query);
  }
  for (auto active = _active.begin(); active != _active.end();) {
    if (std::find(queries.begin(), queries.end(), active->first) != queries.end()) {
      ++active;
    } else {
      deactivate(*active->second);
      active = _active.erase(active);
    }
  }
}

void Subscriptions::activate(const std::string& query) {
  auto active = std::make_unique<Active>();
  active->filter = makeSelectExp(active->arena, _broker.repository(), query);
  if (!active->filter) return;
  active->className = active->filter->body().query->className;
  const Reply reply = _broker.provider().startIndications(*active->filter, active->className);
  if (reply.code != CMPI_RC_OK) {
    std::cerr << "zebcim: the plug-in refuses the filter " << quotedForLog(query) << ": "
              << oneLine(reply.message) << std::endl;
  }
  _active.emplace(query, std::move(active));
}

void Subscriptions::deactivate(const Active& active) {
  const ProviderCalls& provider = _broker.provider();
  const bool last = _active.size() == 1;
  if (last) {
    provider.stopIndications(*active.filter, active.className);
  } else {
    provider.deactivateFilter(*active.filter, active.className);
  }
}

}  // namespace ZebManager
