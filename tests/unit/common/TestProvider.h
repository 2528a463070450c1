#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/ProviderDecorator.h"

namespace ZEB::test {

/// A provider that notes every operation, and fails where the test wants.
class TestProvider : public CmpiCpp::CmpiInstanceProvider,
                     public CmpiCpp::CmpiAssociationProvider,
                     public CmpiCpp::CmpiMethodProvider,
                     public CmpiCpp::CmpiIndicationProvider {
 public:
  /// What the test sees of it, also when it is gone.
  struct Seen {
    std::vector<std::string> calls;
    std::function<void(const std::string&)> during;
    bool destroyed = false;
  };

  TestProvider(const CmpiCpp::CmpiBroker& broker, std::shared_ptr<Seen> seen)
      : _broker(broker), _seen(std::move(seen)) {}
  ~TestProvider() override { _seen->destroyed = true; }

  static ProviderCreator creator(const std::shared_ptr<Seen>& seen) {
    return
        [seen](const CmpiCpp::CmpiBroker& broker, const Logger&) -> std::unique_ptr<CmpiCpp::CmpiProvider> {
          return std::make_unique<TestProvider>(broker, seen);
        };
  }

  CmpiCpp::CmpiBroker getBroker() const override { return _broker; }
  void cleanup(const CmpiCpp::CmpiContext&, bool) override { note("cleanup"); }
  void enumInstanceNames(CmpiCpp::CmpiObjectPathResult&, const CmpiCpp::CmpiContext&,
                         const CmpiCpp::CmpiObjectPath&) override {
    note("enumInstanceNames");
  }
  void enumInstances(CmpiCpp::CmpiInstanceResult&, const CmpiCpp::CmpiContext&,
                     const CmpiCpp::CmpiObjectPath&, CmpiCpp::CmpiPropertyList) override {
    note("enumInstances");
  }
  void getInstance(CmpiCpp::CmpiInstanceResult&, const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                   CmpiCpp::CmpiPropertyList) override {
    note("getInstance");
  }
  void createInstance(CmpiCpp::CmpiObjectPathResult&, const CmpiCpp::CmpiContext&,
                      const CmpiCpp::CmpiObjectPath&, const CmpiCpp::CmpiInstance&) override {
    note("createInstance");
  }
  void modifyInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                      const CmpiCpp::CmpiInstance&, CmpiCpp::CmpiPropertyList) override {
    note("modifyInstance");
  }
  void deleteInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&) override {
    note("deleteInstance");
  }
  void execQuery(CmpiCpp::CmpiInstanceResult&, const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                 const char*, const char*) override {
    note("execQuery");
  }
  void associators(CmpiCpp::CmpiInstanceResult&, const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                   const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&,
                   const CmpiCpp::CmpiName&, CmpiCpp::CmpiPropertyList) override {
    note("associators");
  }
  void associatorNames(CmpiCpp::CmpiObjectPathResult&, const CmpiCpp::CmpiContext&,
                       const CmpiCpp::CmpiObjectPath&, const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&,
                       const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&) override {
    note("associatorNames");
  }
  void references(CmpiCpp::CmpiInstanceResult&, const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                  const CmpiCpp::CmpiName&, const CmpiCpp::CmpiName&, CmpiCpp::CmpiPropertyList) override {
    note("references");
  }
  void referenceNames(CmpiCpp::CmpiObjectPathResult&, const CmpiCpp::CmpiContext&,
                      const CmpiCpp::CmpiObjectPath&, const CmpiCpp::CmpiName&,
                      const CmpiCpp::CmpiName&) override {
    note("referenceNames");
  }
  void invokeMethod(CmpiCpp::CmpiMethodResult& result, const CmpiCpp::CmpiContext&,
                    const CmpiCpp::CmpiObjectPath&, const CmpiCpp::CmpiName& method, const CmpiCpp::CmpiArgs&,
                    CmpiCpp::CmpiArgs&) override {
    note("invokeMethod " + method.str());
    result.returnData(std::uint32_t{0});
  }
  void authorizeFilter(const CmpiCpp::CmpiContext&, const char*, const CmpiCpp::CmpiObjectPath&,
                       const char*) override {
    note("authorizeFilter");
  }
  void mustPoll(const CmpiCpp::CmpiContext&, const char*, const CmpiCpp::CmpiObjectPath&) override {
    note("mustPoll");
  }
  bool activateFilter(const CmpiCpp::CmpiContext&, const char*, const CmpiCpp::CmpiObjectPath&,
                      bool first) override {
    note("activateFilter");
    return !first;
  }
  bool deActivateFilter(const CmpiCpp::CmpiContext&, const char*, const CmpiCpp::CmpiObjectPath&,
                        bool last) override {
    note("deActivateFilter");
    return !last;
  }
  void enableIndications(const CmpiCpp::CmpiContext&) override { note("enableIndications"); }
  void disableIndications(const CmpiCpp::CmpiContext&) override { note("disableIndications"); }

 private:
  void note(const std::string& call) {
    _seen->calls.push_back(call);
    if (_seen->during) _seen->during(call);
  }

  CmpiCpp::CmpiBroker _broker;
  std::shared_ptr<Seen> _seen;
};

}  // namespace ZEB::test
