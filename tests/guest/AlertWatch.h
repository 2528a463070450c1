#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Guest.h"

namespace ZEB::guest {

/// What makes an alert of the plug-in this alert and no other. What an alert does not carry is empty.
struct Alert {
  std::string event;
  /// The path of what it is about.
  std::string element;
  std::string subCategory;
  /// What the description ends with, in parentheses.
  std::string detail;
  std::string place, partNumber, comment;

  bool operator==(const Alert&) const = default;
};

void PrintTo(const Alert& alert, std::ostream* stream);

/// `zebcim watch --json` in the guest, with a store of its own.
class AlertWatch {
 public:
  /// Forgets what the store kept. Nothing is watched yet.
  explicit AlertWatch(Guest& guest);
  ~AlertWatch();
  AlertWatch(const AlertWatch&) = delete;
  AlertWatch& operator=(const AlertWatch&) = delete;

  /// Changes event settings (Name=Value) before the watch starts.
  void configure(const std::string& assignments);
  /// Takes a port out of the ports whose status is reported, before the watch starts. By the port's number.
  void exclude(int portNumber);
  /// Returns when the watch listens.
  void start();

  /// What came since the last call: when `expected` alerts are there or too late, and a pass that began after
  /// now has ended.
  std::vector<Alert> next(std::size_t expected);

 private:
  Guest& guest_;
  std::size_t seen_ = 0;
  bool started_ = false;
};

}  // namespace ZEB::guest
