#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "cmpicpp/CmpiData.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/ZEBUtil.h"
#include "support/FakeBroker.h"
#include "support/RecordingLogSink.h"

// A collection of things and of what ties them, and requests to it.

namespace ZEB {

using namespace CmpiCpp;

class Thing : public CmpiManagedInstance {
 public:
  Thing(const char* className, const std::string& id, int number = 0)
      : _path("n", className, "h", {{"Id", id}}), _number(number) {}
  CmpiObjectPath makeObjectPath() override { return _path; }
  CmpiInstance makeInstance() override {
    CmpiInstance instance(_path);
    instance.addProperty("Id", _path.getKey("Id"));
    instance.addProperty("Number", static_cast<std::uint32_t>(_number));
    return instance;
  }
  CmpiName className() const override { return _path.className(); }

 private:
  CmpiObjectPath _path;
  int _number;
};

class Link : public CmpiManagedInstanceAssociation {
 public:
  Link(NameLiteral className, const CmpiObjectPath& first, const CmpiObjectPath& second)
      : CmpiManagedInstanceAssociation(first, second), _className(className) {}
  CmpiObjectPath makeObjectPath() override {
    return {"n", _className, "h", {{"Antecedent", firstEnd()}, {"Dependent", secondEnd()}}};
  }
  CmpiInstance makeInstance() override {
    CmpiInstance instance(makeObjectPath());
    instance.addProperty("Antecedent", firstEnd());
    instance.addProperty("Dependent", secondEnd());
    return instance;
  }
  CmpiName className() const override { return _className; }
  Roles roles() const override { return {"Antecedent", "Dependent"}; }

 private:
  NameLiteral _className;
};

/// Filters of an association request; what is empty restricts nothing.
struct Filters {
  const char* associationClass = "";
  const char* resultClass = "";
  const char* role = "";
  const char* resultRole = "";
};

class InstanceCollectionTest : public testing::Test {
 protected:
  InstanceCollectionTest() {
    broker.declareClass("Port", "Device");
    broker.declareClass("Card", "Device");
    broker.declareClass("PortOfCard", "Association");
    broker.declareClass("HostedBy", "Association");
    ZEBUtil::setBroker(broker.handle());
  }
  ~InstanceCollectionTest() override { ZEBUtil::setBroker(CmpiBroker()); }

  Thing& thing(const char* className, const std::string& id, int number = 0) {
    auto* made = new Thing(className, id, number);
    collection.createInstance(made);
    return *made;
  }
  Link& link(NameLiteral className, const CmpiObjectPath& first, const CmpiObjectPath& second) {
    auto* made = new Link(className, first, second);
    collection.createInstance(made);
    return *made;
  }

  static std::vector<std::string> ids(const std::vector<CmpiObjectPath>& paths) {
    std::vector<std::string> all;
    for (const auto& path : paths)
      all.push_back(path.findKey("Id") ? path.getKey("Id").asString() : path.str());
    return all;
  }
  static std::vector<std::string> ids(const std::vector<CmpiInstance>& instances) {
    std::vector<CmpiObjectPath> paths;
    for (const auto& instance : instances) paths.push_back(instance.path());
    return ids(paths);
  }

  std::vector<std::string> enumerated(const char* className) {
    CmpiObjectPathResult names;
    CmpiInstanceResult instances;
    collection.enumInstanceNames(names, context, {"n", className});
    collection.enumInstances(instances, context, {"n", className}, nullptr);
    EXPECT_EQ(ids(names.paths()), ids(instances.instances()));
    return ids(names.paths());
  }

  std::vector<std::string> associatorNames(const CmpiObjectPath& path, const Filters& filters = {}) {
    CmpiObjectPathResult result;
    collection.associatorNames(result, context, path, filters.associationClass, filters.resultClass,
                               filters.role, filters.resultRole);
    return ids(result.paths());
  }
  std::vector<std::string> associators(const CmpiObjectPath& path, const Filters& filters = {}) {
    CmpiInstanceResult result;
    collection.associators(result, context, path, filters.associationClass, filters.resultClass, filters.role,
                           filters.resultRole, nullptr);
    return ids(result.instances());
  }
  /// Classes of the associations found.
  std::vector<std::string> references(const CmpiObjectPath& path, const char* resultClass = "",
                                      const char* role = "") {
    CmpiInstanceResult instances;
    CmpiObjectPathResult names;
    collection.references(instances, context, path, resultClass, role, nullptr);
    collection.referenceNames(names, context, path, resultClass, role);
    std::vector<std::string> found, named;
    for (const auto& instance : instances.instances()) found.push_back(instance.className().str());
    for (const auto& name : names.paths()) named.push_back(name.className().str());
    EXPECT_EQ(found, named);
    return found;
  }

  test::FakeBroker broker;
  test::FakeBroker::Call call{broker};
  test::RecordedLogger recorded;
  CmpiManagedInstanceCollection collection{recorded.logger};
  CmpiContext context;
};

}  // namespace ZEB
