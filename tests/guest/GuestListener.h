#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Guest.h"
#include "support/ReceivedExport.h"

namespace ZEB::guest {

/// An HTTP listener in the guest that acknowledges every export. It ends with the object.
class GuestListener {
 public:
  /// `name` is that of a folder in the results folder, which nobody else has.
  GuestListener(Guest& guest, const std::string& name, int port);
  ~GuestListener();
  GuestListener(const GuestListener&) = delete;
  GuestListener& operator=(const GuestListener&) = delete;

  std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/alerts"; }
  /// Waits a minute at most until so many exports have come; tells whether they have.
  bool waitFor(std::size_t count) const;
  std::vector<ZebManager::ReceivedExport> received() const;

 private:
  Guest& guest_;
  std::string inGuest_;
  std::filesystem::path folder_;
  int port_;
};

}  // namespace ZEB::guest
