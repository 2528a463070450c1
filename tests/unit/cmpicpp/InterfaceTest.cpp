#include "InterfaceFixture.h"

// The C interfaces: what reaches the provider, and what comes back.

namespace CmpiCpp {
namespace {

using testing::ElementsAre;
using ZEB::test::FakeBroker;

TEST_F(InterfaceTest, allFourLeadToOneProvider) {
  EXPECT_EQ(provider.getInstanceMI(), interfaces.instanceMI());
  EXPECT_EQ(provider.getAssociationMI(), interfaces.associationMI());
  EXPECT_EQ(provider.getMethodMI(), interfaces.methodMI());
  EXPECT_EQ(provider.getIndicationMI(), interfaces.indicationMI());
  EXPECT_EQ(BareProvider(broker.handle()).getInstanceMI(), nullptr);
}

TEST_F(InterfaceTest, noTableHasAnEmptySlot) {
  const auto* instance = interfaces.instanceMI()->ft;
  EXPECT_TRUE(instance->cleanup && instance->enumerateInstanceNames && instance->enumerateInstances &&
              instance->getInstance && instance->createInstance && instance->modifyInstance &&
              instance->deleteInstance && instance->execQuery && instance->enumerateInstancesFiltered);
  const auto* association = interfaces.associationMI()->ft;
  EXPECT_TRUE(association->cleanup && association->associators && association->associatorNames &&
              association->references && association->referenceNames && association->associatorsFiltered &&
              association->referencesFiltered);
  const auto* method = interfaces.methodMI()->ft;
  EXPECT_TRUE(method->cleanup && method->invokeMethod);
  const auto* indication = interfaces.indicationMI()->ft;
  EXPECT_TRUE(indication->cleanup && indication->authorizeFilter && indication->mustPoll &&
              indication->activateFilter && indication->deActivateFilter && indication->enableIndications &&
              indication->disableIndications && indication->authorizeFilterCollection &&
              indication->activateFilterCollection && indication->deActivateFilterCollection);
}

TEST_F(InterfaceTest, pathsComeBackInOrderAndOnceDone) {
  FakeBroker::Call call(broker);
  EXPECT_EQ(enumerateNames(call).rc, CMPI_RC_OK);
  EXPECT_THAT(call.result().paths, ElementsAre(CmpiObjectPath("n", "First"), CmpiObjectPath("n", "Second")));
  EXPECT_EQ(call.result().done, 1);
}

TEST_F(InterfaceTest, instancesComeBackWithTheListHonoured) {
  FakeBroker::Call call(broker);
  const char* list[] = {"b", nullptr};
  auto* mi = interfaces.instanceMI();
  EXPECT_EQ(mi->ft->getInstance(mi, &call.context(), &call.result(), call.path({"n", "C"}), list).rc,
            CMPI_RC_OK);
  ASSERT_EQ(call.result().instances.size(), 1u);
  ASSERT_EQ(call.result().instances[0].properties().size(), 1u);
  EXPECT_EQ(call.result().instances[0].getProperty("B"), CmpiData("b"));
}

TEST_F(InterfaceTest, aChangeReachesTheProviderAsValues) {
  FakeBroker::Call call(broker);
  CmpiInstance instance(CmpiObjectPath("n", "C"));
  instance.addProperty("A", "a");
  const char* list[] = {"A", nullptr};
  auto* mi = interfaces.instanceMI();
  EXPECT_EQ(mi->ft
                ->modifyInstance(mi, &call.context(), &call.result(), call.path({"n", "C"}),
                                 call.instance(instance), list)
                .rc,
            CMPI_RC_OK);
  EXPECT_EQ(provider.modified, "n:C a A");
}

TEST_F(InterfaceTest, aListThatNamesAKeyOfThePathIsNone) {
  CmpiInstance instance(CmpiObjectPath("n", "C"));
  instance.addProperty("A", "a");
  auto* mi = interfaces.instanceMI();
  const auto modify = [&](std::vector<const char*> list) {
    list.push_back(nullptr);
    FakeBroker::Call call(broker);
    EXPECT_EQ(
        mi->ft
            ->modifyInstance(mi, &call.context(), &call.result(), call.path({"n", "C", "", {{"Id", "i"}}}),
                             call.instance(instance), list.data())
            .rc,
        CMPI_RC_OK);
    return provider.modified;
  };
  EXPECT_EQ(modify({"A", "iD"}), "n:C.Id=\"i\" a -");
  EXPECT_EQ(modify({"Id"}), "n:C.Id=\"i\" a -");
  EXPECT_EQ(modify({"A", "B"}), "n:C.Id=\"i\" a A");
}

TEST_F(InterfaceTest, filtersThatAreLeftOutAreEmptyNames) {
  FakeBroker::Call call(broker);
  auto* mi = interfaces.associationMI();
  mi->ft->associators(mi, &call.context(), &call.result(), call.path({"n", "C"}), nullptr, "R", nullptr,
                      "Role", nullptr);
  EXPECT_THAT(provider.filters, ElementsAre("", "R", "", "Role"));
}

TEST_F(InterfaceTest, aMethodGivesItsValueAndItsArguments) {
  FakeBroker::Call call(broker);
  CmpiArgs in;
  in.setArg("In", "x");
  auto* out = call.args();
  auto* mi = interfaces.methodMI();
  EXPECT_EQ(
      mi->ft
          ->invokeMethod(mi, &call.context(), &call.result(), call.path({"n", "C"}), "M", call.args(in), out)
          .rc,
      CMPI_RC_OK);
  EXPECT_THAT(call.result().data, ElementsAre(CmpiData(std::uint32_t{7})));
  EXPECT_EQ(*out->value.findArg("Echo"), CmpiData("x"));
  EXPECT_EQ(call.result().done, 1);
}

TEST_F(InterfaceTest, aMethodWithoutArgumentListsWorks) {
  FakeBroker::Call call(broker);
  auto* mi = interfaces.methodMI();
  EXPECT_EQ(mi->ft
                ->invokeMethod(mi, &call.context(), &call.result(), call.path({"n", "C"}), nullptr, nullptr,
                               nullptr)
                .rc,
            CMPI_RC_OK);
  EXPECT_TRUE(call.result().data.empty());
}

struct Thrown {
  std::function<void()> by;
  CMPIrc rc;
  std::string message;
};

TEST_F(InterfaceTest, whatIsThrownBecomesAStatusAndNothingIsReturned) {
  const Thrown cases[] = {
      {[] { throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND); }, CMPI_RC_ERR_NOT_FOUND, ""},
      {[] { throw CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "not you"); }, CMPI_RC_ERR_ACCESS_DENIED, "not you"},
      {[] { throw std::logic_error("broken"); }, CMPI_RC_ERR_FAILED, "broken"},
      {[] { throw 5; }, CMPI_RC_ERR_FAILED, "unknown error"},
  };
  for (const Thrown& thrown : cases) {
    provider.during = thrown.by;
    FakeBroker::Call call(broker);
    const CMPIStatus status = enumerateNames(call);
    EXPECT_EQ(status.rc, thrown.rc);
    EXPECT_EQ(message(status), thrown.message);
    EXPECT_TRUE(call.result().paths.empty());
    EXPECT_EQ(call.result().done, 0);
  }
}

TEST_F(InterfaceTest, aResultThatIsRefusedIsTheStatusOfTheCall) {
  FakeBroker::Call call(broker);
  call.result().answer = CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED;
  EXPECT_EQ(enumerateNames(call).rc, CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED);
}

TEST_F(InterfaceTest, whatAProviderDoesNotOfferIsNotSupported) {
  BareProvider bare(broker.handle());
  open(bare);
  FakeBroker::Call call(broker);
  auto* path = call.path({"n", "C"});
  auto* instance = call.instance(CmpiInstance(CmpiObjectPath("n", "C")));
  auto* result = &call.result();
  auto* context = &call.context();
  auto* mi = interfaces.instanceMI();
  auto* am = interfaces.associationMI();
  auto* mm = interfaces.methodMI();
  for (const CMPIStatus& status : {
           mi->ft->enumerateInstanceNames(mi, context, result, path),
           mi->ft->enumerateInstances(mi, context, result, path, nullptr),
           mi->ft->getInstance(mi, context, result, path, nullptr),
           mi->ft->createInstance(mi, context, result, path, instance),
           mi->ft->modifyInstance(mi, context, result, path, instance, nullptr),
           mi->ft->deleteInstance(mi, context, result, path),
           mi->ft->execQuery(mi, context, result, path, "q", "l"),
           mi->ft->enumerateInstancesFiltered(mi, context, result, path, nullptr, "l", "f", nullptr),
           am->ft->associators(am, context, result, path, "", "", "", "", nullptr),
           am->ft->associatorNames(am, context, result, path, "", "", "", ""),
           am->ft->references(am, context, result, path, "", "", nullptr),
           am->ft->referenceNames(am, context, result, path, "", ""),
           mm->ft->invokeMethod(mm, context, result, path, "M", nullptr, nullptr),
       }) {
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  }
}

TEST_F(InterfaceTest, filterCallsReachTheProvider) {
  FakeBroker::Call call(broker);
  auto* mi = interfaces.indicationMI();
  EXPECT_EQ(
      mi->ft->activateFilter(mi, &call.context(), nullptr, "CIM_AlertIndication", call.path({"n", "C"}), 1)
          .rc,
      CMPI_RC_OK);
  EXPECT_EQ(provider.activated, "CIM_AlertIndication n:C first");
}

TEST_F(InterfaceTest, mustPollTouchesNoneOfItsArguments) {
  FakeBroker::Call call(broker);
  auto* mi = interfaces.indicationMI();
  // As one object manager calls it, without the result: every argument after the context is shifted.
  auto* const nonsense = reinterpret_cast<const CMPIObjectPath*>(std::uintptr_t{0x10});
  EXPECT_EQ(mi->ft->mustPoll(mi, &call.context(), nullptr, nullptr, nullptr, nonsense).rc, CMPI_RC_OK);
  EXPECT_TRUE(provider.polled);
}

}  // namespace
}  // namespace CmpiCpp
