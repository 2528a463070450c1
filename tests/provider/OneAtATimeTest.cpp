#include <future>

#include "WorkerFixture.h"

// While all instances are built anew, nobody reads or changes them.

namespace ZEB::test {
namespace {

using namespace std::chrono_literals;
using CmpiCpp::CmpiObjectPath;

/// An operation of a client, with objects of its own.
struct Operation {
  const char* name;
  void (*call)(CMPIInstanceMI*, CMPIAssociationMI*, FakeBroker::Call&, const CmpiObjectPath& port,
               const CmpiCpp::CmpiInstance& settings);
};

constexpr Operation kOperations[] = {
    {"enumInstanceNames",
     [](auto* mi, auto*, auto& call, const auto& port, const auto&) {
       mi->ft->enumerateInstanceNames(mi, &call.context(), &call.result(), call.path(port));
     }},
    {"enumInstances",
     [](auto* mi, auto*, auto& call, const auto& port, const auto&) {
       mi->ft->enumerateInstances(mi, &call.context(), &call.result(), call.path(port), nullptr);
     }},
    {"getInstance",
     [](auto* mi, auto*, auto& call, const auto& port, const auto&) {
       mi->ft->getInstance(mi, &call.context(), &call.result(), call.path(port), nullptr);
     }},
    {"modifyInstance",
     [](auto* mi, auto*, auto& call, const auto&, const auto& settings) {
       const char* list[] = {"PollInterval", nullptr};
       mi->ft->modifyInstance(mi, &call.context(), &call.result(), call.path(settings.path()),
                              call.instance(settings), list);
     }},
    {"associators",
     [](auto*, auto* mi, auto& call, const auto& port, const auto&) {
       mi->ft->associators(mi, &call.context(), &call.result(), call.path(port), nullptr, nullptr, nullptr,
                           nullptr, nullptr);
     }},
    {"associatorNames",
     [](auto*, auto* mi, auto& call, const auto& port, const auto&) {
       mi->ft->associatorNames(mi, &call.context(), &call.result(), call.path(port), nullptr, nullptr,
                               nullptr, nullptr);
     }},
    {"references",
     [](auto*, auto* mi, auto& call, const auto& port, const auto&) {
       mi->ft->references(mi, &call.context(), &call.result(), call.path(port), nullptr, nullptr, nullptr);
     }},
    {"referenceNames",
     [](auto*, auto* mi, auto& call, const auto& port, const auto&) {
       mi->ft->referenceNames(mi, &call.context(), &call.result(), call.path(port), nullptr, nullptr);
     }},
};

TEST_F(WorkerTest, EveryOperationWaitsForTheBuild) {
  CMPIAssociationMI* associations = nullptr;
  {
    FakeBroker::Call call(broker);
    associations = _Generic_Create_AssociationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  }
  const CmpiObjectPath port = enumerate("ZEB_EthernetPort").at(0).path();
  auto settings = enumerate("ZEB_EthEventSettings").at(0);
  settings.addProperty("PollInterval", std::uint32_t{77});
  std::vector<std::future<void>> underWay;
  duringBuild = [&] {
    for (const Operation& operation : kOperations) {
      underWay.push_back(std::async(std::launch::async, [&] {
        FakeBroker::Call call(broker);
        operation.call(instances, associations, call, port, settings);
      }));
    }
    std::this_thread::sleep_for(300ms);
    for (std::size_t i = 0; i < underWay.size(); ++i)
      EXPECT_EQ(underWay[i].wait_for(0ms), std::future_status::timeout) << kOperations[i].name;
  };
  host.addPort(6, "eth4");
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  ASSERT_EQ(underWay.size(), std::size(kOperations));
  for (auto& each : underWay) EXPECT_EQ(each.wait_for(10s), std::future_status::ready);
  FakeBroker::Call call(broker);
  associations->ft->cleanup(associations, &call.context(), 1);
}

}  // namespace
}  // namespace ZEB::test
