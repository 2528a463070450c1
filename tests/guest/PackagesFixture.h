#pragma once

#include <map>
#include <string>

#include "GuestFixture.h"

namespace ZEB::guest {

/// The Debian packages on a server that systemd runs. A test says what has to be installed and finds it
/// there, installed by a test before it or now: an installation takes 15 s.
class PackagesFixture : public GuestFixture {
 protected:
  /// For an installation or a removal; ten times as long as it takes on an idle machine.
  static constexpr std::chrono::seconds kInstall{180};

  static void SetUpTestSuite();
  /// No reset: the packages leave the network alone, and so do their tests.
  void SetUp() override {}

  /// Installs both packages unless they are there in just this version ("this" or "next"), with the users
  /// "writer", of the group that may write, and "reader", whose password is "secret". The server answers
  /// then.
  static void require(const std::string& version);
  /// Installs both packages or one of them.
  static Result install(const std::string& version, const std::string& package = "*");
  /// Files and folders of configuration and state that came or went since before the packages were first
  /// installed, one a line, but for those that dpkg, systemd and the lists of users keep for themselves.
  static std::string comeAndGone();
  /// Waits until the server answers.
  static void awaitAnswer();
  /// What Debian's client says, on either output. `where` is a scheme, "user:password@" or nothing, and the
  /// host.
  static std::string ask(const std::string& operation, const std::string& object,
                         const std::string& where = "http://localhost:5988");
  static std::string set(const std::string& assignment, const std::string& user = "writer:secret@");
  static std::string setting(const std::string& property);

  /// One line that a command writes.
  static std::string line(const std::string& command);
  /// A property of the service, as systemd tells it.
  static std::string service(const std::string& property);
  /// What the kernel says of a process of the service.
  static std::map<std::string, std::string> status(const std::string& process);
  /// The log of the service, for those who have to find out why it does not do what it should.
  static std::string log();
};

}  // namespace ZEB::guest
