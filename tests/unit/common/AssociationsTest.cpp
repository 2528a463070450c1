#include "CollectionFixture.h"
#include "support/Environment.h"

// How a collection leads from one end of an association to the other.

namespace ZEB {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(AssociationsTest, theConfiguredSystemIsMeantInEveryNamespace) {
  const test::Environment configured("ZEB_COMPUTER_SYSTEM_PATH", R"(n:System.Id="system")");
  EXPECT_THAT(associatorNames({"elsewhere", "System", "h", {{"Id", "system"}}}), ElementsAre("A"));
  EXPECT_THAT(associatorNames({"elsewhere", "System", "h", {{"Id", "another"}}}), IsEmpty());
  EXPECT_THAT(associatorNames({"elsewhere", "Port", "h", {{"Id", "A"}}}), IsEmpty());
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

}  // namespace
}  // namespace ZEB
