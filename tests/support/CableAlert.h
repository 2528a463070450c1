// What is said of a pulled cable, and of one that is put back.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/ReceivedExport.h"

namespace ZebManager {

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

/// The alerts of a cable that is pulled and put back so many times: every property that has a value, but for
/// those that are different each time.
std::vector<std::map<std::string, std::string>> roundsOfCable(const AlertedPort& port, int count);

/// The same of alerts that came. Throws when a property that is different each time is not as it has to be:
/// when the alert was raised, the identifier that goes with that, and its place in the sequence.
std::vector<std::map<std::string, std::string>> lasting(const std::vector<ReceivedExport>& alerts);

/// The alerts' places in their sequence. Throws when they belong to several.
std::vector<int> places(const std::vector<ReceivedExport>& alerts);

}  // namespace ZebManager
