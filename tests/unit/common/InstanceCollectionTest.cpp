#include <gmock/gmock.h>

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/ZEBUtil.h"
#include "support/FakeBroker.h"
#include "support/RecordingLogSink.h"

// How the collection answers: which instances, in which order, under which filters.

namespace ZEB {
namespace {

using namespace CmpiCpp;
using testing::ElementsAre;
using testing::IsEmpty;

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

/// Counts the instances that are alive.
class Counted : public Thing {
 public:
  explicit Counted(int& alive) : Thing("Counted", "x"), _alive(alive) { ++_alive; }
  ~Counted() override { --_alive; }

 private:
  int& _alive;
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

TEST_F(InstanceCollectionTest, enumeratesExactlyAClassInTheOrderOfCreation) {
  thing("Port", "b");
  thing("Card", "x");
  thing("Port", "a");
  EXPECT_THAT(enumerated("Port"), ElementsAre("b", "a"));
  EXPECT_THAT(enumerated("PORT"), ElementsAre("b", "a"));
  EXPECT_THAT(enumerated("Device"), IsEmpty()) << "each subclass is asked for by itself";
  EXPECT_THAT(enumerated("Nothing"), IsEmpty());
  EXPECT_EQ(collection.size(), 3u);
  EXPECT_EQ(collection.getManagedInstance(1).className(), CmpiName("Card"));
}

TEST_F(InstanceCollectionTest, invisibleInstancesAreNotEnumerated) {
  thing("Port", "a").setVisible(false);
  Thing& shown = thing("Port", "b");
  EXPECT_THAT(enumerated("Port"), ElementsAre("b"));
  shown.setVisible(false);
  EXPECT_THAT(enumerated("Port"), IsEmpty());
  shown.setVisible(true);
  EXPECT_THAT(enumerated("Port"), ElementsAre("b"));
}

TEST_F(InstanceCollectionTest, propertyListsAreHonouredEverywhere) {
  Thing& port = thing("Port", "a", 7);
  Thing& card = thing("Card", "c", 8);
  link("PortOfCard", card.makeObjectPath(), port.makeObjectPath());
  const char* list[] = {"number", "Dependent", "Unknown", nullptr};
  CmpiInstanceResult result;
  collection.enumInstances(result, context, {"n", "Port"}, list);
  EXPECT_TRUE(collection.getInstance(result, context, port.makeObjectPath(), list));
  collection.associators(result, context, port.makeObjectPath(), "", "", "", "", list);
  collection.references(result, context, port.makeObjectPath(), "", "", list);
  ASSERT_EQ(result.instances().size(), 4u);
  const char* expected[] = {"Number", "Number", "Number", "Dependent"};
  for (std::size_t i = 0; i < 4; ++i) {
    ASSERT_EQ(result.instances()[i].properties().size(), 1u);
    EXPECT_EQ(result.instances()[i].properties()[0].name.view(), expected[i]);
  }
}

TEST_F(InstanceCollectionTest, getsAnInstanceByItsPathWhateverTheHost) {
  thing("Port", "a", 7);
  CmpiInstanceResult result;
  EXPECT_TRUE(collection.getInstance(result, context, {"N", "port", "elsewhere", {{"ID", "a"}}}, nullptr));
  EXPECT_EQ(result.instances()[0].getProperty("Number"), CmpiData(std::uint32_t{7}));
  EXPECT_FALSE(collection.getInstance(result, context, {"n", "Port", "h", {{"Id", "A"}}}, nullptr));
  EXPECT_FALSE(collection.getInstance(result, context, {"n", "Port"}, nullptr));
  EXPECT_FALSE(collection.getInstance(result, context, {}, nullptr));
  EXPECT_EQ(result.instances().size(), 1u);
}

TEST_F(InstanceCollectionTest, severalInstancesMayShareAPath) {
  thing("Port", "a", 1).setVisible(false);
  Thing& second = thing("Port", "a", 2);
  thing("Port", "a", 3);
  const CmpiObjectPath path = second.makeObjectPath();
  EXPECT_EQ(collection.getManagedInstance(path), &second) << "the first that is visible";
  CmpiInstanceResult result;
  EXPECT_TRUE(collection.getInstance(result, context, path, nullptr));
  EXPECT_EQ(result.instances()[0].getProperty("Number"), CmpiData(std::uint32_t{2}));
  EXPECT_EQ(enumerated("Port").size(), 2u);
}

TEST_F(InstanceCollectionTest, anInvisibleInstanceIsThereForItsOwnerAlone) {
  Thing& hidden = thing("Port", "a");
  hidden.setVisible(false);
  EXPECT_EQ(collection.getManagedInstance(hidden.makeObjectPath()), &hidden);
  CmpiInstanceResult result;
  EXPECT_FALSE(collection.getInstance(result, context, hidden.makeObjectPath(), nullptr));
  EXPECT_EQ(collection.getManagedInstance({"n", "Port", "h", {{"Id", "b"}}}), nullptr);
}

class AssociationsTest : public InstanceCollectionTest {
 protected:
  AssociationsTest() {
    link("PortOfCard", card, portA);
    link("PortOfCard", card, portB);
    link("HostedBy", system, portA);
  }

  CmpiObjectPath card = thing("Card", "card").makeObjectPath();
  CmpiObjectPath portA = thing("Port", "A").makeObjectPath();
  CmpiObjectPath portB = thing("Port", "B").makeObjectPath();
  /// Not held by the collection.
  CmpiObjectPath system{"n", "System", "h", {{"Id", "system"}}};
};

TEST_F(AssociationsTest, leadInBothDirections) {
  EXPECT_THAT(associatorNames(card), ElementsAre("A", "B"));
  EXPECT_THAT(associatorNames(portB), ElementsAre("card"));
  EXPECT_THAT(references(card), ElementsAre("PortOfCard", "PortOfCard"));
  EXPECT_THAT(references(portA), ElementsAre("PortOfCard", "HostedBy"));
}

TEST_F(AssociationsTest, anEndThatIsNotHeldHasANameAndNoInstance) {
  EXPECT_THAT(associatorNames(portA), ElementsAre("card", "system"));
  EXPECT_THAT(associators(portA), ElementsAre("card"));
  EXPECT_THAT(associatorNames(system), ElementsAre("A"));
  EXPECT_THAT(associators(system), ElementsAre("A"));
  EXPECT_THAT(references(system), ElementsAre("HostedBy"));
}

TEST_F(AssociationsTest, areFilteredByRole) {
  EXPECT_THAT(associatorNames(card, {.role = "antecedent"}), ElementsAre("A", "B"));
  EXPECT_THAT(associatorNames(card, {.role = "Dependent"}), IsEmpty());
  EXPECT_THAT(associatorNames(card, {.role = "NoSuchRole"}), IsEmpty());
  EXPECT_THAT(associatorNames(portA, {.role = "Dependent"}), ElementsAre("card", "system"));
  EXPECT_THAT(references(portA, "", "Dependent"), ElementsAre("PortOfCard", "HostedBy"));
  EXPECT_THAT(references(portA, "", "Antecedent"), IsEmpty());
}

TEST_F(AssociationsTest, areFilteredByResultRole) {
  EXPECT_THAT(associatorNames(card, {.resultRole = "DEPENDENT"}), ElementsAre("A", "B"));
  EXPECT_THAT(associatorNames(card, {.resultRole = "Antecedent"}), IsEmpty());
  EXPECT_THAT(associatorNames(card, {.resultRole = "NoSuchRole"}), IsEmpty());
}

TEST_F(AssociationsTest, areFilteredByAssociationClassAndItsDescendants) {
  EXPECT_THAT(associatorNames(portA, {.associationClass = "PortOfCard"}), ElementsAre("card"));
  EXPECT_THAT(associatorNames(portA, {.associationClass = "Association"}), ElementsAre("card", "system"));
  EXPECT_THAT(associatorNames(portA, {.associationClass = "NoSuchClass"}), IsEmpty());
  EXPECT_THAT(references(portA, "HostedBy"), ElementsAre("HostedBy"));
  EXPECT_THAT(references(portA, "association"), ElementsAre("PortOfCard", "HostedBy"));
  EXPECT_THAT(references(portA, "NoSuchClass"), IsEmpty());
}

TEST_F(AssociationsTest, areFilteredByResultClassAndItsDescendants) {
  EXPECT_THAT(associatorNames(portA, {.resultClass = "Card"}), ElementsAre("card"));
  EXPECT_THAT(associatorNames(portA, {.resultClass = "Device"}), ElementsAre("card"));
  EXPECT_THAT(associatorNames(portA, {.resultClass = "System"}), ElementsAre("system"));
  EXPECT_THAT(associators(card, {.resultClass = "Port"}), ElementsAre("A", "B"));
  EXPECT_THAT(associators(card, {.resultClass = "NoSuchClass"}), IsEmpty());
}

TEST_F(AssociationsTest, allFiltersHoldTogether) {
  EXPECT_THAT(associatorNames(portA, {"PortOfCard", "Device", "Dependent", "Antecedent"}),
              ElementsAre("card"));
  EXPECT_THAT(associatorNames(portA, {"PortOfCard", "System", "Dependent", "Antecedent"}), IsEmpty());
}

TEST_F(AssociationsTest, anInvisibleAssociationLeadsNowhere) {
  collection.getManagedInstance(5).setVisible(false);  // the first port's link to the system
  EXPECT_THAT(associatorNames(portA), ElementsAre("card"));
  EXPECT_THAT(references(portA), ElementsAre("PortOfCard"));
  EXPECT_THAT(references(system), IsEmpty());
}

TEST_F(AssociationsTest, anInvisibleEndIsNeitherNamedNorShown) {
  collection.getManagedInstance(portA)->setVisible(false);
  EXPECT_THAT(associatorNames(card), ElementsAre("B"));
  EXPECT_THAT(associators(card), ElementsAre("B"));
  EXPECT_THAT(references(card), ElementsAre("PortOfCard", "PortOfCard"))
      << "the association itself is visible";
}

TEST_F(AssociationsTest, aPathThatIsNoEndHasNone) {
  EXPECT_THAT(associatorNames({"n", "Port", "h", {{"Id", "C"}}}), IsEmpty());
  EXPECT_THAT(associatorNames({}), IsEmpty());
}

TEST_F(AssociationsTest, equalEndsAreFoundOnce) {
  Thing& loop = thing("Port", "loop");
  link("HostedBy", loop.makeObjectPath(), loop.makeObjectPath());
  EXPECT_THAT(associatorNames(loop.makeObjectPath()), ElementsAre("loop"));
  EXPECT_THAT(references(loop.makeObjectPath()), ElementsAre("HostedBy"));
}

TEST_F(AssociationsTest, anAssociationIsAnInstanceToo) {
  const CmpiObjectPath path = collection.getManagedInstance(3).makeObjectPath();
  CmpiInstanceResult result;
  EXPECT_TRUE(collection.getInstance(result, context, path, nullptr));
  CmpiObjectPathResult names;
  collection.enumInstanceNames(names, context, {"n", "PortOfCard"});
  EXPECT_EQ(names.paths().size(), 2u);
}

TEST_F(InstanceCollectionTest, ownsItsInstances) {
  int alive = 0;
  {
    CmpiManagedInstanceCollection own(recorded.logger);
    own.createInstance(new Counted(alive));
    own.createInstance(new Counted(alive));
    EXPECT_EQ(alive, 2);
    own.clear();
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(own.size(), 0u);
    own.createInstance(new Counted(alive));
  }
  EXPECT_EQ(alive, 0);
}

TEST_F(AssociationsTest, nothingIsFoundAfterClearing) {
  collection.clear();
  EXPECT_THAT(enumerated("Port"), IsEmpty());
  EXPECT_THAT(associatorNames(card), IsEmpty());
  EXPECT_EQ(collection.getManagedInstance(card), nullptr);
  thing("Port", "new");
  EXPECT_THAT(enumerated("Port"), ElementsAre("new"));
}

TEST_F(AssociationsTest, theOtherEndOfAStrangerIsEmpty) {
  Link one("PortOfCard", card, portA);
  EXPECT_EQ(one.otherEnd(portA), card);
  EXPECT_EQ(one.otherEnd(card), portA);
  EXPECT_TRUE(one.otherEnd(system).empty());
}

TEST_F(InstanceCollectionTest, anInstanceHasNoMethodsOfItsOwn) {
  CmpiMethodResult result;
  try {
    thing("Port", "a").invokeMethod("Reset", {}, result);
    ADD_FAILURE();
  } catch (const CmpiStatus& status) {
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_METHOD_NOT_FOUND);
  }
}

}  // namespace
}  // namespace ZEB
