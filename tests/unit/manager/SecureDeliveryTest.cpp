// Delivery over TLS.
#include <fstream>

#include "DeliveryFixture.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SecureDeliveries : public Deliveries {
 protected:
  SecureDeliveries() { std::ofstream(trusted) << certificate.pem(); }

  TestCertificate certificate;
  const std::string trusted = directory / "trusted.pem";
  TestListener listener{[](std::size_t, const auto&) { return TestListener::acknowledgement(); }, 0,
                        &certificate};
};

TEST_F(SecureDeliveries, GoToWhoShowsATrustedCertificate) {
  settings.trustedCertificates = trusted;
  start(listener.url());
  deliver(1, 2);
  ASSERT_TRUE(becomesEmpty());
  EXPECT_THAT(alertsIn(listener), ElementsAre(1, 2));
}

TEST_F(SecureDeliveries, WaitForATrustedCertificate) {
  start(listener.url());
  deliver(1, 1);
  EXPECT_TRUE(logs("certificate"));
  EXPECT_EQ(delivery->waiting(), 1U);
  EXPECT_THAT(listener.requests(), IsEmpty());
}

/// The certificate is for the address of the loopback.
TEST_F(SecureDeliveries, WaitForACertificateOfThatName) {
  settings.trustedCertificates = trusted;
  start("https://localhost:" + std::to_string(listener.port()) + "/alerts");
  deliver(1, 1);
  EXPECT_TRUE(logs("certificate"));
  EXPECT_EQ(delivery->waiting(), 1U);
  EXPECT_THAT(listener.requests(), IsEmpty());
}

TEST_F(SecureDeliveries, GoToAnyoneWhenToldTo) {
  settings.verifyCertificates = false;
  start(listener.url());
  deliver(1, 1);
  ASSERT_TRUE(listener.waitFor(1));
}

TEST_F(SecureDeliveries, WaitForTlsThatIsNotTooOld) {
  const TestCertificate old("NORMAL:-VERS-ALL:+VERS-TLS1.1:+VERS-TLS1.0");
  TestListener antique([](std::size_t, const auto&) { return TestListener::acknowledgement(); }, 0, &old);
  settings.verifyCertificates = false;
  start(antique.url());
  deliver(1, 1);
  EXPECT_TRUE(logs("unsupported")) << "version or protocol, by the library that curl has";
  EXPECT_EQ(delivery->waiting(), 1U);
  EXPECT_THAT(antique.requests(), IsEmpty());
}

}  // namespace
}  // namespace ZebManager
