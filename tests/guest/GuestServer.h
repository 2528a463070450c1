#pragma once

#include <map>
#include <string>
#include <vector>

#include "Guest.h"

namespace ZEB::guest {

/// `zebcim serve` in the guest, with folders of its own there. Everybody may read over HTTP at kAddress, and
/// root write, with the password "secret". It ends with the object.
class GuestServer {
 public:
  static constexpr char kAddress[] = "127.0.0.1:5988";

  /// Starts it with no memory of any before, and with more in its configuration.
  explicit GuestServer(Guest& guest, const std::string& settings = {});
  ~GuestServer();
  GuestServer(const GuestServer&) = delete;
  GuestServer& operator=(const GuestServer&) = delete;

  /// Ends it in good order and starts it on the state that it left.
  void restart();

  /// The paths of what is associated with each of these objects, given by their paths: all questions over one
  /// connection, since a process takes its time in the guest.
  std::map<std::string, std::vector<std::string>> associatorNames(const std::vector<std::string>& paths);

 private:
  void start();
  void stop();

  Guest& guest_;
};

}  // namespace ZEB::guest
