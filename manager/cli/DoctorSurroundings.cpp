#include "cli/DoctorSurroundings.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/EthtoolFamily.h"
#include "cli/Programs.h"
#include "local/RunFolder.h"
#include "local/ServiceLink.h"
#include "posix/Arguments.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

struct Lack {
  int major;
  int minor;
  const char* what;
};

/// What kernels before that version do not say over netlink.
constexpr std::array kLacks = {
    Lack{5, 6, "does not know the address burnt in; the driver is asked"},
    Lack{5, 13, "has no standard counters; the driver's own are read"},
};

void lookAtKernel(DoctorFindings& findings) {
  utsname kernel{};
  uname(&kernel);
  int major = 0;
  int minor = 0;
  std::sscanf(kernel.release, "%d.%d", &major, &minor);
  const std::string release = "Linux " + std::string(kernel.release);
  if (std::pair(major, minor) < std::pair(4, 18)) {
    return findings.bad("kernel", release + ": older than 4.18, which is what is needed; take a newer one");
  }
  std::string lacks;
  for (const Lack& lack : kLacks) {
    if (std::pair(major, minor) < std::pair(lack.major, lack.minor))
      lacks += std::string("; it ") + lack.what;
  }
  if (ethtoolOfKernel() == EthtoolFamily::Missing) {
    lacks +=
        "; it has no ethtool netlink (5.6 and later with CONFIG_ETHTOOL_NETLINK have it): a change of link "
        "modes "
        "or Wake-on-LAN is not announced, and seen when somebody asks";
  }
  lacks.empty() ? findings.good("kernel", release) : findings.note("kernel", release + lacks);
}

/// Bits of the rights that this process has.
unsigned long long capabilities() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != "CapEff:") continue;
    status >> word;
    return std::strtoull(word.c_str(), nullptr, 16);
  }
  return 0;
}

void lookAtRights(DoctorFindings& findings) {
  constexpr unsigned kNetAdmin = 12;
  if (geteuid() != 0) {
    findings.note("rights",
                  "an ordinary user: vital product data, Wake-on-LAN and stores are shown to root alone");
  } else if ((capabilities() >> kNetAdmin & 1) == 0) {
    findings.note("rights",
                  "no CAP_NET_ADMIN: the kernel does not tell about Wake-on-LAN; give it to the process");
  } else {
    findings.good("rights", "root");
  }
}

/// What a program of zebcim's prints. Throws ManagerError when it is not there.
std::string answerOf(const std::string& program, std::vector<std::string> words) {
  words.insert(words.begin(), findProgram(program));
  ZEB::Pipe pipe = ZEB::makePipe();
  ZEB::ChildProcess child([&] {
    dup2(pipe.writing.get(), STDOUT_FILENO);
    execv(words.front().c_str(), ZEB::argumentsOf(words).data());
    return 127;
  });
  pipe.writing = {};
  std::string text;
  std::array<char, 4096> buffer{};
  for (ssize_t got = 0; (got = read(pipe.reading.get(), buffer.data(), buffer.size())) > 0;)
    text.append(buffer.data(), static_cast<std::size_t>(got));
  child.wait();
  return text;
}

void lookAtConfiguration(DoctorFindings& findings, const Options& options) {
  std::vector<std::string> words = {"examine"};
  if (!options.config.empty()) words.insert(words.end(), {"--config", options.config});
  std::istringstream lines(answerOf("zebcim-server", words));
  for (std::string state, what, text;
       std::getline(lines, state, '\t') && std::getline(lines, what, '\t') && std::getline(lines, text);) {
    if (state == "ok") findings.good(what, text);
    if (state == "note") findings.note(what, text);
    if (state == "failed") findings.bad(what, text);
  }
}

void lookForService(DoctorFindings& findings, const std::string& runFolder) {
  const auto begun = std::chrono::steady_clock::now();
  const auto link = ServiceLink::find(runFolder);
  if (!link) {
    return findings.note("service", "none listens at " + serviceSocket(runFolder) +
                                        ": commands load the plug-in; systemctl start zebcim starts it");
  }
  static_cast<void>(link->ask(
      "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
      "PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"EnumerateInstanceNames\"><LOCALNAMESPACEPATH>"
      "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"jxv\"/></LOCALNAMESPACEPATH><IPARAMVALUE "
      "NAME=\"ClassName\">"
      "<CLASSNAME NAME=\"ZEB_EthEventSettings\"/></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>"));
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begun;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f ms", took.count());
  findings.good("service", "answers at " + serviceSocket(runFolder) + " within " + text.data());
}

bool mentionsPlugin(const std::filesystem::path& file) {
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (line.find("ZEBEthernetPort") != std::string::npos) return true;
  }
  return false;
}

}  // namespace

void lookAtSettings(DoctorFindings& findings) {
  constexpr char kFile[] = "/etc/qv-zeb/qv-zeb.toml";
  const char* const named = std::getenv("ZEB_CONFIG");
  std::error_code ignored;
  if (std::filesystem::exists(named ? named : kFile, ignored)) {
    findings.good("settings", named ? named : kFile);
  } else if (named) {
    findings.bad("settings",
                 "ZEB_CONFIG names " + std::string(named) + ", which is not there: defaults hold");
  } else {
    findings.good("settings", std::string("defaults, without ") + kFile);
  }
}

void lookAtThisMachine(DoctorFindings& findings) {
  lookAtKernel(findings);
  lookAtRights(findings);
}

void lookAtService(DoctorFindings& findings, const Options& options, const std::string& runFolder) {
  try {
    lookAtConfiguration(findings, options);
    lookForService(findings, runFolder);
  } catch (const ManagerError& error) {
    findings.bad("service", error.what());
  }
}

void lookAtObjectManagers(DoctorFindings& findings) {
  struct Row {
    const char* name;
    const char* program;
    const char* file;
  };
  constexpr std::array kManagers = {
      Row{"sfcb", "/usr/sbin/sfcbd", "/var/lib/sfcb/registration/providerRegister"},
      Row{"OpenPegasus", "/usr/sbin/cimserver", "/var/lib/qv-zeb/OpenPegasus"},
  };
  for (const Row& row : kManagers) {
    std::error_code ignored;
    if (!std::filesystem::exists(row.program, ignored)) continue;
    const bool known = std::filesystem::is_directory(row.file, ignored) || mentionsPlugin(row.file);
    findings.note("known to", std::string(row.name) +
                                  (known ? ": registered" : ": not registered; zeb-register does it"));
  }
}

}  // namespace ZebManager
