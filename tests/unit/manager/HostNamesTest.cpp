#include <gmock/gmock.h>

#include <fstream>

#include "broker/HostName.h"
#include "posix/TemporaryFolder.h"
#include "server/HostNames.h"

namespace ZebManager {
namespace {

class HostNamesTest : public testing::Test {
 protected:
  HostNamesTest() {
    std::ofstream(file) << "127.0.0.1 localhost\n192.0.2.9\tother.example other\n"
                        << "127.0.1.1 \t Own.Example " << hostName() << " alias # not.this\n#" << hostName()
                        << " nor.this\n";
  }
  /// A client that has reached 192.0.2.1.
  bool means(const std::string& host) const {
    return HostNames({"console.example"}, file).mean(host, "192.0.2.1");
  }

  const ZEB::TemporaryFolder folder;
  const std::string file = (folder / "hosts").string();
};

TEST_F(HostNamesTest, AreThoseOfTheMachineOfTheFileAndOfTheConfiguration) {
  for (const std::string& name : {std::string("localhost"), hostName(), std::string("own.example"),
                                  std::string("alias"), std::string("console.example")}) {
    EXPECT_TRUE(means(name)) << name;
    EXPECT_TRUE(means(name + ":5988")) << name;
    EXPECT_TRUE(means(name + ".")) << name;
  }
  EXPECT_TRUE(means("LocalHost"));
  for (const char* const name :
       {"evil.example", "other", "other.example", "not.this", "nor.this", "localhost.evil.example",
        "localhost:", "localhost:5988.evil.example", "localhost:x", "", ":5988", ".", "localhost evil"}) {
    EXPECT_EQ(means(name), name == std::string("localhost:")) << name;
  }
}

TEST_F(HostNamesTest, AddressesAreThoseOfTheLoopbackAndTheOneThatWasReached) {
  for (const char* const address :
       {"127.0.0.1", "127.0.0.1:5988", "127.1.2.3", "[::1]", "[::1]:5989", "192.0.2.1", "192.0.2.1:5989",
        "[::ffff:192.0.2.1]", "[::ffff:127.0.0.1]:1"}) {
    EXPECT_TRUE(means(address)) << address;
  }
  for (const char* const address :
       {"192.0.2.2", "0.0.0.0", "[::]", "[2001:db8::1]", "[::1", "[::1]x", "[]", "1"}) {
    EXPECT_FALSE(means(address)) << address;
  }
  EXPECT_TRUE(HostNames({}, file).mean("[fe80::1%eth0]", "fe80::1"));
}

}  // namespace
}  // namespace ZebManager
