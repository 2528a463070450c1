#include "GuestFixture.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "GuestError.h"
#include "Program.h"
#include "posix/TemporaryFolder.h"
#include "support/Content.h"

namespace ZEB::guest {
namespace {

using namespace std::chrono_literals;

/// What build-guest ends with on a machine that cannot have the guest.
constexpr int kCannot = 77;

std::unique_ptr<Guest> sharedGuest;
constinit FirstProgram firstProgram = FirstProgram::Agent;

/// Makes the guest's files current, which is quick when they are, and starts the guest.
class SharedGuest : public testing::Environment {
 public:
  void SetUp() override {
    const TemporaryFolder folder;
    const auto log = folder.path() / "log";
    ChildProcess build = startProgram({GUEST_BUILDER, GUEST_FILES}, log);
    const int status = build.wait(600s).value_or(-1);
    const std::string said = test::contentOf(log);
    if (status == kCannot) GTEST_SKIP() << said;
    ASSERT_EQ(status, 0) << said;
    sharedGuest = std::make_unique<Guest>(GUEST_FILES, testServer(), firstProgram);
  }

  void TearDown() override { sharedGuest.reset(); }
};

[[maybe_unused]] testing::Environment* const environment = testing::AddGlobalTestEnvironment(new SharedGuest);

}  // namespace

Hardware testServer() {
  return {.slots = {3, 4, 7, kFreeSlot},
          .cards = {{.name = "slot3a", .model = kE1000e, .slot = 3, .partner = true},
                    {.name = "slot3b", .model = kE1000e, .slot = 3, .function = 1, .partner = true},
                    {.name = "slot4", .model = kVmxnet3, .slot = 4},
                    {.name = "slot7",
                     .model = kVirtioNet,
                     .slot = 7,
                     .properties = "speed=10000,duplex=full",
                     .partner = true},
                    {.name = "lom1", .model = kE1000e, .label = "Onboard LAN 1", .partner = true},
                    {.name = "e1000", .model = kE1000, .partner = true},
                    {.name = "rtl8139", .model = kRtl8139},
                    {.name = "e100", .model = kI82559er},
                    {.name = "virtio", .model = kVirtioNet, .partner = true}}};
}

bool beginWith(FirstProgram first) {
  firstProgram = first;
  return true;
}

void GuestFixture::SetUp() {
  guest().reset();
}

Guest& GuestFixture::guest() {
  if (!sharedGuest) throw GuestError("the guest was not started");
  return *sharedGuest;
}

nlohmann::json GuestFixture::jsonOf(std::string_view script) {
  return nlohmann::json::parse(guest().must(script));
}

std::string GuestFixture::fileLine(const std::string& path) {
  std::string line = guest().run("head -n 1 " + path).output;
  if (!line.empty() && line.back() == '\n') line.pop_back();
  return line;
}

bool GuestFixture::awaitCarrier(const std::string& link, bool carrier) {
  const std::string folder = "/sys/class/net/" + link;
  const std::string state = carrier ? "up|unknown" : "down|lowerlayerdown";
  return guest().await("[ $(cat " + folder + "/carrier) = " + (carrier ? "1" : "0") + " ] && grep -qxE '" +
                       state + "' " + folder + "/operstate");
}

nlohmann::json GuestFixture::statistics() {
  nlohmann::json found;
  for (const nlohmann::json& link : jsonOf("ip -j -s link show"))
    found[link.at("ifname")] = link.at("stats64");
  return found;
}

void GuestFixture::makeTraffic(const std::string& link) {
  // To a neighbour that nobody is; the driver counts what it sends all the same.
  guest().must(
      "set -e\nip address add 198.18.0.1/24 dev " + link +
      "\nip neighbour add 198.18.0.2 lladdr 02:00:00:00:00:02 dev " + link +
      "\nfor n in {1..20}; do echo frame >/dev/udp/198.18.0.2/9; done\nip address flush to 198.18.0.1 dev " +
      link);
}

void GuestFixture::bringUp(const std::vector<std::string>& links) {
  std::string all, up;
  for (const std::string& link : links) {
    all += " " + link;
    up += "link set " + link + " up\n";
  }
  // One script for all, and no process for each.
  const Result result = guest().run("ip -batch - <<END\n" + up + "END\nfor link in" + all + R"(; do
      until read -r carrier </sys/class/net/$link/carrier && read -r state </sys/class/net/$link/operstate &&
          [[ $carrier = 1 && $state =~ ^(up|unknown)$ ]]; do
        [ $SECONDS -lt 15 ] || { echo $link; exit 1; }
        sleep 0.05
      done
    done)");
  EXPECT_EQ(result.status, 0) << result.output << result.errors;
}

}  // namespace ZEB::guest
