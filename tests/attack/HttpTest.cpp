// Requests that can be read in two ways, pages that lead their name to this machine, and TLS as it was once.
#include <gmock/gmock.h>
#include <gnutls/gnutls.h>

#include "Attack.h"
#include "Ground.h"
#include "TlsClient.h"
#include "Unit.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

int answersIn(const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find("HTTP/1.1 "); at != std::string::npos; at = text.find("HTTP/1.1 ", at + 1))
    ++count;
  return count;
}

/// A request with these headers in the place of its length, and another one behind it.
std::string followed(const std::string& lengths, const std::string& body) {
  return "POST /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/xml\r\nCIMOperation: "
         "MethodCall\r\n"
         "CIMMethod: EnumerateClassNames\r\nCIMObject: root/jxv\r\n" +
         lengths + "\r\n" + body + namesOfClasses();
}

TEST(Http, WhatCanBeReadInTwoWaysIsRefusedAndNothingBehindItIsRead) {
  REQUIRE_GROUND();
  const Unit unit;
  const std::string body = call("EnumerateClassNames", "");
  const std::string length = "Content-Length: " + std::to_string(body.size()) + "\r\n";
  const std::string chunked = "Transfer-Encoding: chunked\r\n";
  char size[16] = {};
  std::snprintf(size, sizeof size, "%zx\r\n", body.size());
  const std::string chunks = size + body + "\r\n0\r\n\r\n";
  EXPECT_EQ(answersIn(ask(unit.http(), followed(length, body))), 2);
  EXPECT_EQ(answersIn(ask(unit.http(), followed(chunked, chunks))), 2);
  for (const std::string& lengths :
       {length + chunked, chunked + length, length + length, length + "Content-Length: 0\r\n",
        "Content-Length: 0\r\n" + length, chunked + chunked,
        std::string("Transfer-Encoding: gzip, chunked\r\n"), "Content-Length : 5\r\n" + chunked,
        length + "Transfer-Encoding : chunked\r\n", length + "Host: evil.example\r\n",
        std::string("Content-Length: +5\r\n"), std::string("Content-Length: 5, 5\r\n"),
        std::string("Content-Length: 0x5\r\n")}) {
    for (const std::string& sent : {body, chunks}) {
      const std::string answer = ask(unit.http(), followed(lengths, sent));
      EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 ")) << lengths;
      EXPECT_THAT(answer, Not(HasSubstr("HTTP/1.1 200 "))) << lengths;
    }
  }
}

/// A page of evil.example whose name leads here once it has been loaded.
TEST(Http, AnotherMachinesNameIsRefused) {
  REQUIRE_GROUND();
  const Unit unit({.settings = "[listen]\nnames = [\"console.example\"]\n", .http = "*:0"});
  const std::string port = unit.http().substr(unit.http().rfind(':'));
  const auto statusFor = [&](const std::string& address, const std::string& host) {
    std::string request = namesOfClasses(credentials("reader", "secret"));
    request.replace(request.find("localhost"), 9, host);
    return statusOf(ask(address + port, request));
  };
  for (const std::string& host : {std::string("localhost"), "LOCALHOST" + port, "127.0.0.1" + port,
                                  std::string("[::1]"), "console.example" + port}) {
    EXPECT_EQ(statusFor("127.0.0.1", host), 200) << host;
  }
  EXPECT_EQ(statusFor("192.0.2.1", "192.0.2.1" + port), 200);
  for (const std::string& host :
       {"evil.example" + port, std::string("evil.example"), "localhost.evil.example" + port,
        std::string("192.0.2.2"), std::string("0.0.0.0"), std::string("@localhost"),
        std::string("localhost@evil.example")}) {
    EXPECT_EQ(statusFor("127.0.0.1", host), 421) << host;
    EXPECT_EQ(statusFor("192.0.2.1", host), 421) << host;
  }
}

TEST(Http, TlsNeedsKeysThatGoWithTheConnectionAndCiphersThatProtectWhole) {
  REQUIRE_GROUND();
  const Unit unit;
  const auto accepts = [&](const std::string& priorities) {
    return TlsClient(unit.https(), priorities).connected();
  };
  for (const char* const good : {"NORMAL", "NORMAL:-VERS-ALL:+VERS-TLS1.3", "NORMAL:-VERS-ALL:+VERS-TLS1.2",
                                 "NORMAL:-VERS-ALL:+VERS-TLS1.2:-CIPHER-ALL:+AES-128-GCM",
                                 "NORMAL:-VERS-ALL:+VERS-TLS1.2:-CIPHER-ALL:+CHACHA20-POLY1305"}) {
    EXPECT_TRUE(accepts(good)) << good;
  }
  for (const char* const bad : {"NORMAL:-VERS-ALL:+VERS-TLS1.1", "NORMAL:-VERS-ALL:+VERS-TLS1.0",
                                "NORMAL:-VERS-ALL:+VERS-TLS1.2:-CIPHER-ALL:+AES-128-CBC:+AES-256-CBC",
                                "NORMAL:-VERS-ALL:+VERS-TLS1.2:-KX-ALL:+RSA",
                                "NORMAL:-VERS-ALL:+VERS-TLS1.2:-CIPHER-ALL:+AES-256-CCM-8"}) {
    EXPECT_FALSE(accepts(bad)) << bad;
  }
  EXPECT_THAT(TlsClient(unit.https(), "NORMAL").ask(namesOfClasses()), StartsWith("HTTP/1.1 200 "));
}

/// With a key by which static RSA would be possible.
TEST(Http, AnRsaKeyDoesNotDecideTheKeysOfConnections) {
  REQUIRE_GROUND();
  ASSERT_EQ(
      std::system("openssl req -x509 -newkey rsa:2048 -nodes -subj /CN=localhost -keyout /run/ground/rsa.key "
                  "-out /run/ground/rsa.crt 2>/dev/null && chmod 644 /run/ground/rsa.key"),
      0);
  const Unit unit(
      {.settings = "[listen]\ncertificate = \"/run/ground/rsa.crt\"\nkey = \"/run/ground/rsa.key\"\n"});
  EXPECT_TRUE(TlsClient(unit.https(), "NORMAL:-VERS-ALL:+VERS-TLS1.2").connected());
  EXPECT_FALSE(TlsClient(unit.https(), "NORMAL:-VERS-ALL:+VERS-TLS1.2:-KX-ALL:+RSA").connected());
}

}  // namespace
}  // namespace ZebManager
