// The plug-in's process of a real server, ended and stopped by hand.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/socket.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <optional>
#include <thread>

#include "posix/Arguments.h"
#include "posix/ChildProcess.h"
#include "posix/FileDescriptor.h"
#include "posix/Pipe.h"
#include "posix/TemporaryFolder.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using ZEB::test::contentOf;

constexpr char kRequest[] =
    R"(<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="EnumerateInstanceNames"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="jxv"/></LOCALNAMESPACEPATH><IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="ZEB_EthernetPort"/></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";

/// Parent of a process; 0 when it is gone.
pid_t parentOf(const std::string& process) {
  const std::string stat = contentOf("/proc/" + process + "/stat");
  const std::size_t name = stat.rfind(") ");
  if (name == std::string::npos || stat[name + 2] == 'Z') return 0;
  return std::stoi(stat.substr(name + 4));
}

class ServedProvider : public testing::Test {
 protected:
  void SetUp() override {
    start();
    ASSERT_NE(port, 0) << "the server does not listen";
  }

  ~ServedProvider() override {
    if (!server) return;
    server->kill(SIGTERM);
    server->wait();
  }

  void start() {
    ZEB::Pipe output = ZEB::makePipe();
    const std::string own = folder.path().string();
    std::vector<std::string> words = {"zebcim",   "serve",         "--http",   "127.0.0.1:0",  "--https",
                                      "none",     "--state",       own,        "--source",     ZEB_SNAPSHOT,
                                      "--plugin", ZEB_REAL_PLUGIN, "--schema", ZEB_SCHEMA_FILE};
    std::vector<std::string> variables = {"ZEB_STORE_DIR=" + own, "ZEB_RUN_DIR=" + own,
                                          "ZEB_LOG_LEVEL=error"};
    server.emplace([&] {
      dup2(output.writing.get(), STDOUT_FILENO);
      return execve(ZEB_CIM, ZEB::argumentsOf(words).data(), ZEB::argumentsOf(variables).data());
    });
    output.writing = {};
    std::string line;
    for (char byte = 0; read(output.reading.get(), &byte, 1) == 1 && byte != '\n';) line += byte;
    const std::size_t colon = line.rfind(':');
    if (colon != std::string::npos) port = static_cast<in_port_t>(std::stoi(line.substr(colon + 1)));
  }

  /// What the server says to a request for the names of all ports; empty when it says nothing for a while.
  std::string ask() const {
    const ZEB::FileDescriptor connection(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval patience{20, 0};
    setsockopt(connection.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(connection.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) return "";
    const std::string body = kRequest;
    const std::string request =
        "POST /cimom HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/xml; charset=\"utf-8\"\r\n"
        "Content-Length: " +
        std::to_string(body.size()) +
        "\r\nCIMOperation: MethodCall\r\nCIMMethod: EnumerateInstanceNames\r\nCIMObject: root/jxv\r\n"
        "Connection: close\r\n\r\n" +
        body;
    send(connection.get(), request.data(), request.size(), MSG_NOSIGNAL);
    std::string answer;
    std::array<char, 4096> buffer{};
    for (ssize_t got = 0; (got = recv(connection.get(), buffer.data(), buffer.size(), 0)) > 0;) {
      answer.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return answer;
  }

  /// The server's only child; 0 while it has none.
  pid_t provider() const {
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
      const std::string name = entry.path().filename();
      if (std::isdigit(static_cast<unsigned char>(name[0])) && parentOf(name) == server->id())
        return std::stoi(name);
    }
    return 0;
  }

  const ZEB::TemporaryFolder folder;
  std::optional<ZEB::ChildProcess> server;
  in_port_t port = 0;
};

TEST_F(ServedProvider, IsReplacedWhenItIsKilled) {
  EXPECT_THAT(ask(), HasSubstr("JXV:ZEB_EthernetPort:1"));
  for (int round = 0; round < 5; ++round) {
    const pid_t before = provider();
    ASSERT_GT(before, 0);
    kill(before, SIGKILL);
    EXPECT_THAT(ask(), HasSubstr("JXV:ZEB_EthernetPort:1")) << round;
    EXPECT_NE(provider(), before);
  }
}

TEST_F(ServedProvider, IsReplacedWhenItAnswersNobody) {
  EXPECT_THAT(ask(), HasSubstr("JXV:ZEB_EthernetPort:1"));
  const pid_t before = provider();
  ASSERT_GT(before, 0);
  kill(before, SIGSTOP);
  const auto begin = std::chrono::steady_clock::now();
  std::vector<std::future<std::string>> answers;
  for (int i = 0; i < 8; ++i) answers.push_back(std::async(std::launch::async, [this] { return ask(); }));
  for (auto& answer : answers) EXPECT_THAT(answer.get(), HasSubstr("JXV:ZEB_EthernetPort:1"));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 25s) << "nobody waits for the time limit";
}

TEST_F(ServedProvider, DiesWithItsServer) {
  EXPECT_THAT(ask(), HasSubstr("JXV:ZEB_EthernetPort:1"));
  const pid_t process = provider();
  ASSERT_GT(process, 0);
  server->kill();
  bool gone = false;
  for (int wait = 0; wait < 2000 && !gone; ++wait) {
    gone = parentOf(std::to_string(process)) == 0;
    std::this_thread::sleep_for(10ms);
  }
  EXPECT_TRUE(gone);
}

}  // namespace
}  // namespace ZebManager
