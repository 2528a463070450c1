#include "CollectionFixture.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/InstanceMemories.h"

// What a collection holds, shows and hides.

namespace ZEB {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Counts the instances that are alive.
class Counted : public Thing {
 public:
  explicit Counted(int& alive) : Thing("Counted", "x"), _alive(alive) { ++_alive; }
  ~Counted() override { --_alive; }

 private:
  int& _alive;
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

TEST_F(InstanceCollectionTest, anInstanceHasNoMethodsOfItsOwn) {
  CmpiMethodResult result;
  try {
    thing("Port", "a").invokeMethod("Reset", {}, result);
    ADD_FAILURE();
  } catch (const CmpiStatus& status) {
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_METHOD_NOT_FOUND);
  }
}

/// Watches its status, and remembers a number.
class Watching : public Thing {
 public:
  explicit Watching(int number) : Thing("Watching", "x"), remembered(number) {
    setWatchesStatus(true);
    setSubject("x");
  }
  std::any memory() const override { return remembered; }
  void remember(const std::any& memory) override { remembered = std::any_cast<int>(memory); }

  int remembered;
};

TEST_F(InstanceCollectionTest, knowsThoseThatWatchUntilItIsCleared) {
  thing("Port", "a");
  collection.createInstance(new Watching(1));
  EXPECT_THAT(collection.watchers(), ElementsAre(1u));
  collection.clear();
  EXPECT_THAT(collection.watchers(), IsEmpty());
}

TEST_F(InstanceCollectionTest, theNewestMemoryIsGivenOn) {
  auto* watching = new Watching(1);
  collection.createInstance(watching);
  InstanceMemories memories;
  memories.take(collection);
  watching->remembered = 2;
  memories.take(collection);
  Watching next(0);
  memories.giveTo(next);
  EXPECT_EQ(next.remembered, 2);
}

}  // namespace
}  // namespace ZEB
