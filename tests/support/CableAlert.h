// What is said of a pulled cable, and of one that is put back.
#pragma once

#include <map>
#include <string>

#include "support/ReceivedExport.h"

namespace ZebHost {

/// A port as its alerts describe it.
struct AlertedPort {
  std::string systemName;
  int number = 0;
  int controller = 0;
  int portOfController = 0;
  std::string place;
  /// Kind and number of the slot, or whatever else it is, as hexadecimal digits.
  std::string encodedPlace;
  std::string partNumber;
  /// What its link is like while the cable is in.
  std::string link;
};

/// Every property of the alert but those of kChanging. A property without a value is not there.
std::map<std::string, std::string> cablePulled(const AlertedPort& port);
std::map<std::string, std::string> cablePutBack(const AlertedPort& port);

/// The properties of an alert that came, checked and without those that are different each time: when it was
/// raised, the identifier that goes with that, and its place in the sequence.
std::map<std::string, std::string> lasting(const ReceivedExport& alert);

}  // namespace ZebHost
