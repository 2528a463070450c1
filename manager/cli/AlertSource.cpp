#include "cli/AlertSource.h"

#include "broker/SelectQuery.h"
#include "cimxml/AnswerReader.h"
#include "cli/Session.h"
#include "query/Condition.h"

namespace ZebManager {
namespace {

class ServiceAlerts : public AlertSource {
 public:
  ServiceAlerts(ServiceLink& service, const ClassRepository& repository, const std::string& query)
      : _service(service), _repository(repository) {
    _service.subscribe(query);
  }

  std::unique_ptr<DeliveredIndication> next(std::chrono::milliseconds patience) override {
    const auto element = _service.next(patience);
    if (!element) return nullptr;
    auto alert = std::make_unique<DeliveredIndication>();
    alert->instance = readInstanceElement(*element, alert->arena, _repository, kNameSpace);
    alert->arrival = std::chrono::system_clock::now();
    return alert;
  }

 private:
  ServiceLink& _service;
  const ClassRepository& _repository;
};

class PluginAlerts : public AlertSource {
 public:
  PluginAlerts(Session& session, const std::string& query)
      : _broker(session.broker()),
        _provider(session.provider()),
        _filter(*makeSelectExp(_arena, session.repository(), query)) {
    _broker.indications().open();
    std::move(_provider.startIndications(_filter, className())).orThrow();
  }
  ~PluginAlerts() override {
    _provider.stopIndications(_filter, className());
    _broker.indications().close();
  }

  std::unique_ptr<DeliveredIndication> next(std::chrono::milliseconds patience) override {
    auto alert = _broker.indications().next(patience);
    return alert && _filter.ft->evaluate(&_filter, alert->instance, nullptr) != 0 ? std::move(alert)
                                                                                  : nullptr;
  }

 private:
  std::string_view className() const { return _filter.body().query->className; }

  Broker& _broker;
  ProviderCalls& _provider;
  Arena _arena;
  const SelectExp& _filter;
};

}  // namespace

std::unique_ptr<AlertSource> openAlerts(Session& session, ServiceLink* service, const std::string& query) {
  checkQuery(OwnedQuery(query).query(), session.repository());
  if (service) return std::make_unique<ServiceAlerts>(*service, session.repository(), query);
  return std::make_unique<PluginAlerts>(session, query);
}

}  // namespace ZebManager
