// A `zebcim serve` of the test's own.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "posix/ChildProcess.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {

/// Which program serves, and where it listens.
struct Place {
  std::string zebcim = ZEB_CIM;
  std::string http = "127.0.0.1:0";
  std::string https = "127.0.0.1:0";
};

/// Its state is in a folder that goes with it. Users are root and daemon, with the password "secret"; only
/// root may write. The process is ended with the object.
class Server {
 public:
  explicit Server(std::vector<std::string> arguments = {}, const std::string& settings = {},
                  const Place& place = {});
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  const std::string& http() const { return _http; }  ///< address and port
  const std::string& https() const { return _https; }
  const std::filesystem::path& folder() const { return _folder.path(); }
  pid_t id() const { return _process->id(); }
  /// Processes of the plug-in, and of who judges logins.
  std::vector<pid_t> children() const;
  /// Resident memory of the server and its children, in bytes.
  std::size_t memory() const;
  /// Asks it to end; its exit status.
  int stop();
  /// Once more on the same state, after stop(); its addresses may be others.
  void start();

 private:
  void configure(const std::string& settings);
  void readAddresses(int output);

  const ZEB::TemporaryFolder _folder{"zebcim-server"};
  std::vector<std::string> _arguments;
  std::optional<ZEB::ChildProcess> _process;
  std::string _http;
  std::string _https;
};

/// A connection to the server on which something was sent, as long as the object lives.
class OpenConnection {
 public:
  /// `from`: the client's address; any when it is empty.
  OpenConnection(const std::string& address, const std::string& bytes, const std::string& from = {});

  int socket() const { return _socket.get(); }
  /// Whether the server has closed it, or does so in time.
  bool isClosedWithin(double seconds) const;
  void sendByte(char byte) const;
  /// What has come, until the end.
  std::string receiveAll() const;

 private:
  ZEB::FileDescriptor _socket;
};

/// What the server answers to bytes on a fresh connection, until it closes or `seconds` are over.
std::string exchange(const std::string& address, const std::string& bytes, double seconds = 20);

/// A request with its usual head.
std::string post(const std::string& body, const std::string& method, const std::string& object = "root/jxv",
                 const std::string& moreHeaders = "Connection: close\r\n");

/// A call of an intrinsic method in a namespace; `parameters` are elements.
std::string call(const std::string& method, const std::string& parameters,
                 const std::vector<std::string>& nameSpace = {"root", "jxv"});

}  // namespace ZebManager
