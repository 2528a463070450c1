// Instances of one class as JSON, for which no other classes' need be made.
#include <nlohmann/json.hpp>

#include "RealCommand.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;

class InstancesCommand : public RealCommand {
 protected:
  Json json(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--json", "--source", snapshotFile("teams")});
    const Outcome outcome = zebcim(arguments);
    EXPECT_EQ(outcome.err, "");
    return Json::parse(outcome.out);
  }
  /// As the model has them with all classes in it: paths that are text are asked for so.
  std::string paths(const std::string& className) const {
    const Outcome outcome = zebcim({"instances", className, "--names", "--source", snapshotFile("teams")});
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  }
};

TEST_F(InstancesCommand, AreThoseOfTheWholeModelWhateverTheClass) {
  std::size_t served = 0;
  for (const Json& each : json({"classes"})) {
    const std::string className = each["class"];
    SCOPED_TRACE(className);
    // One instance of the starter is made for an enumeration, and nothing else knows it.
    if (each["indication"] || className == "ZEB_AutoStart") continue;
    const Json instances = json({"instances", className});
    std::string found;
    for (const Json& instance : instances) found += instance["path"].get<std::string>() + "\n";
    EXPECT_EQ(found, paths(className));
    if (instances.empty()) continue;
    EXPECT_EQ(json({"get", instances.back()["path"]}), Json::array({instances.back()}));
    ++served;
  }
  EXPECT_GT(served, 20U);
}

TEST_F(InstancesCommand, AreThoseOfTheWholeModelForAClassWithSeveralBelowIt) {
  std::string found;
  for (const Json& instance : json({"instances", "CIM_ServiceAccessPoint"}))
    found += instance["path"].get<std::string>() + "\n";
  EXPECT_EQ(found, paths("CIM_ServiceAccessPoint"));
  EXPECT_NE(found.find("ZEB_EthernetLANEndpoint."), std::string::npos);
  EXPECT_NE(found.find("ZEB_IPProtocolEndpoint."), std::string::npos);
}

}  // namespace
}  // namespace ZebManager
