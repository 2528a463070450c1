#include "PackagesFixture.h"

#include <algorithm>
#include <sstream>

namespace ZEB::guest {
namespace {

using namespace std::chrono_literals;

[[maybe_unused]] const bool underSystemd = beginWith(FirstProgram::Systemd);

/// A server that never had the packages, and whose services may start. dpkg reads its lists many times faster
/// when they have been read before.
constexpr std::string_view kPrepare = R"sh(
rm -f /usr/sbin/policy-rc.d /var/lib/man-db/auto-update
dpkg-query -W zebcim zeb-ethernet-provider >/dev/null 2>&1 && dpkg --purge zebcim zeb-ethernet-provider
rm -rf /etc/qv-zeb /etc/pam.d/zebcim /var/lib/qv-zeb /var/lib/zebcim
cat /var/lib/dpkg/info/*.list >/dev/null
)sh";

constexpr std::string_view kFiles =
    "find /etc /var/lib /var/log /run /usr/share/zeb /usr/libexec/zeb "
    "\\( -path /var/lib/dpkg -o -path /run/systemd -o -path /run/log -o -path /run/script \\) -prune "
    "-o ! -path '/etc/*-' ! -path /etc/.pwd.lock -print 2>/dev/null | sort";

/// With passwords that are quick to check.
constexpr std::string_view kUsers = R"sh(
for user in writer reader; do
  getent passwd $user >/dev/null || useradd --no-create-home $user
done
printf '%s:secret\n' writer reader | chpasswd --crypt-method SHA256 --sha-rounds 1000
usermod --groups zebcim writer
)sh";

}  // namespace

void PackagesFixture::SetUpTestSuite() {
  static const bool prepared = [] {
    guest().must(std::string(kPrepare) + std::string(kFiles) + " >/tmp/files-before", 120s);
    return guest().await("systemctl is-system-running", 60s);
  }();
  ASSERT_TRUE(prepared) << line("systemctl is-system-running") << guest().run("systemctl --failed").output;
}

Result PackagesFixture::install(const std::string& version, const std::string& package) {
  return guest().run("dpkg --install --force-unsafe-io " PACKAGES "/" + version + "/" + package + "_*.deb",
                     kInstall);
}

void PackagesFixture::require(const std::string& version) {
  const std::string wanted = version == "next" ? VERSION "+next" : VERSION;
  if (line("dpkg-query -W -f '${db:Status-Status} ${Version}\n' zebcim") == "installed " + wanted) return;
  const Result result = install(version);
  ASSERT_EQ(result.status, 0) << result.output << result.errors;
  awaitAnswer();
  guest().must(kUsers);
}

std::string PackagesFixture::comeAndGone() {
  return guest().run(std::string(kFiles) + " | diff /tmp/files-before - | grep '^[<>]'", 60s).output;
}

void PackagesFixture::awaitAnswer() {
  ASSERT_TRUE(guest().await("curl --silent --output /dev/null http://localhost:5988/", 60s)) << log();
}

std::string PackagesFixture::ask(const std::string& operation, const std::string& object,
                                 const std::string& where) {
  const size_t space = object.find(' ');
  const std::string values = space == std::string::npos ? "" : object.substr(space);
  return guest()
      .run("wbemcli " + operation + " -nl -noverify '" + where + "/root/jxv:" + object.substr(0, space) +
               "'" + values + " 2>&1",
           60s)
      .output;
}

std::string PackagesFixture::set(const std::string& assignment, const std::string& user) {
  return ask("mi", "ZEB_EthEventSettings.InstanceId=\"JXV:0\" " + assignment,
             "https://" + user + "localhost:5989");
}

std::string PackagesFixture::setting(const std::string& property) {
  const std::string said = ask("gp", "ZEB_EthEventSettings.InstanceId=\"JXV:0\" " + property);
  return said.substr(0, said.find('\n'));
}

std::string PackagesFixture::line(const std::string& command) {
  const std::string said = guest().run(command).output;
  return said.substr(0, said.find('\n'));
}

std::string PackagesFixture::service(const std::string& property) {
  return line("systemctl show --value -p " + property + " zebcim.service");
}

std::map<std::string, std::string> PackagesFixture::status(const std::string& process) {
  std::istringstream lines(guest().must("cat /proc/" + process + "/status"));
  std::map<std::string, std::string> found;
  for (std::string name, value; std::getline(lines, name, ':') && std::getline(lines, value);) {
    found[name] = value.substr(std::min(value.size(), value.find_first_not_of(" \t")));
  }
  return found;
}

std::string PackagesFixture::log() {
  return guest().run("journalctl -u zebcim --no-pager").output;
}

}  // namespace ZEB::guest
