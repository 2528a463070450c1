// Who comes from where, and how long whoever guesses has to wait.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>

#include <fstream>

#include "login/LoginSettings.h"
#include "posix/TemporaryFolder.h"
#include "server/ClientAddress.h"
#include "server/LoginBackOff.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using namespace std::chrono_literals;
using Clock = LoginBackOff::Clock;

TEST(LoginBackOff, TheFirstFailuresAreFreeAndEachFurtherOneDoublesThePause) {
  LoginBackOff backOff(3);
  const Clock::time_point now{};
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(backOff.failed("guest", now));
    EXPECT_EQ(backOff.pauseOf("guest", now), 0s);
  }
  EXPECT_TRUE(backOff.failed("guest", now));
  for (const auto pause : {1s, 2s, 4s, 8s, 16s, 30s, 30s}) {
    EXPECT_EQ(backOff.pauseOf("guest", now), pause);
    EXPECT_EQ(backOff.pauseOf("guest", now + pause - 1ms), 1s);
    EXPECT_EQ(backOff.pauseOf("guest", now + pause), 0s);
    EXPECT_FALSE(backOff.failed("guest", now));
  }
  EXPECT_EQ(backOff.pauseOf("other", now), 0s);
}

TEST(LoginBackOff, ASuccessMakesUpForFailures) {
  LoginBackOff backOff(0);
  const Clock::time_point now{};
  EXPECT_TRUE(backOff.failed("guest", now));
  backOff.succeeded("guest");
  EXPECT_EQ(backOff.pauseOf("guest", now), 0s);
  EXPECT_TRUE(backOff.failed("guest", now));
}

TEST(LoginBackOff, NamesThatClientsMakeUpDoNotDriveOutTheLastOnes) {
  LoginBackOff backOff(0);
  Clock::time_point now{};
  for (int i = 0; i < 20'000; ++i) backOff.failed(std::to_string(i), now += 1ms);
  EXPECT_EQ(backOff.pauseOf("0", now), 0s);
  EXPECT_EQ(backOff.pauseOf("19999", now), 1s);
}

struct Place {
  const char* address;
  const char* host;
  const char* client;
  bool loopback;
};

class Addresses : public testing::TestWithParam<Place> {};
INSTANTIATE_TEST_SUITE_P(
    All, Addresses,
    testing::Values(Place{"127.0.0.1", "127.0.0.1", "this machine", true},
                    Place{"127.9.8.7", "127.9.8.7", "this machine", true},
                    Place{"128.0.0.1", "128.0.0.1", "128.0.0.1", false},
                    Place{"::1", "::1", "this machine", true},
                    Place{"::ffff:127.0.0.2", "127.0.0.2", "this machine", true},
                    Place{"::ffff:192.0.2.1", "192.0.2.1", "192.0.2.1", false},
                    Place{"2001:db8:1:2:3:4:5:6", "2001:db8:1:2:3:4:5:6", "2001:db8:1:2::/64", false},
                    Place{"2001:db8:1:2::9", "2001:db8:1:2::9", "2001:db8:1:2::/64", false}));

TEST_P(Addresses, AreCountedAsTheyShould) {
  const Place& place = GetParam();
  sockaddr_in6 wide{};
  sockaddr_in narrow{};
  const sockaddr* address = reinterpret_cast<const sockaddr*>(&wide);
  wide.sin6_family = AF_INET6;
  if (inet_pton(AF_INET6, place.address, &wide.sin6_addr) != 1) {
    narrow.sin_family = AF_INET;
    ASSERT_EQ(inet_pton(AF_INET, place.address, &narrow.sin_addr), 1);
    address = reinterpret_cast<const sockaddr*>(&narrow);
  }
  const ClientAddress from(*address);
  EXPECT_EQ(from.host, place.host);
  EXPECT_EQ(from.client, place.client);
  EXPECT_EQ(from.loopback, place.loopback);
}

class LoginSettingsTest : public testing::Test {
 protected:
  std::string write(const std::string& content) const {
    const std::string file = (_directory / "zebcim.toml").string();
    std::ofstream(file) << content;
    return file;
  }

 private:
  const ZEB::TemporaryFolder _directory;
};

TEST_F(LoginSettingsTest, AreReadFromTheFileOfTheServer) {
  const LoginSettings read = readLoginSettings(
      write("[limits]\nconnections = 5\n[access]\npam-service = \"login\"\nwrite-group = \"\"\n"));
  EXPECT_EQ(read.pamService, "login");
  EXPECT_EQ(read.pamFolder, "");
  EXPECT_EQ(read.writeGroup, "");
  EXPECT_EQ(readLoginSettings("/nowhere/zebcim.toml").writeGroup, "zebcim");
}

TEST_F(LoginSettingsTest, ABadValueIsNotTakenForTheDefault) {
  for (const char* const bad : {"[access]\nwrite-group = 5\n", "[access]\npam-service = \"\"\n", "[access\n",
                                "access = 1\n[access]\n"}) {
    EXPECT_THROW(readLoginSettings(write(bad)), ManagerError) << bad;
  }
  EXPECT_THROW(readLoginSettings("/etc"), ManagerError);
}

}  // namespace
}  // namespace ZebManager
