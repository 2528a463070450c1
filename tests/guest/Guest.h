#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "FirstProgram.h"
#include "Hardware.h"

namespace ZEB::guest {

/// How a script ended in the guest.
struct Result {
  /// The shell's; 124 (or 137) when the script took longer than its limit.
  int status = 0;
  std::string output;
  std::string errors;
};

/// An emulated server that runs Debian's kernel on the given hardware, with drivers loaded and interfaces
/// named after their cards. The host's file system is there, read-only, under an overlay that forgets.
///
/// One at a time on a machine: a second one waits for the first. It ends with the object, or with the thread
/// that made it. For one thread at a time. Whatever the bed itself cannot do throws GuestError.
class Guest {
 public:
  /// `files` as build-guest made them.
  Guest(const std::filesystem::path& files, Hardware hardware, FirstProgram first = FirstProgram::Agent);
  ~Guest();
  Guest(const Guest&) = delete;
  Guest& operator=(const Guest&) = delete;

  /// Runs a bash script there, killed when it takes longer than `limit`.
  Result run(std::string_view script, std::chrono::seconds limit = std::chrono::seconds(60));
  /// Standard output of a script that must succeed.
  std::string must(std::string_view script, std::chrono::seconds limit = std::chrono::seconds(60));
  /// Repeats a script until it succeeds, at most for `limit`; tells whether it did.
  bool await(std::string_view script, std::chrono::seconds limit = std::chrono::seconds(15));

  /// Pulls a card's cable, or puts it back.
  void setLink(const std::string& card, bool connected);
  /// Plugs a card into a free slot of the running server and waits for its interface.
  void plug(const Card& card);
  /// Takes a card out, plugged later or not, and waits until the guest has let go of it.
  void unplug(const std::string& card);

  /// The permanent MAC address of a card, or the one at the other end of its cable.
  std::string addressOf(const std::string& card) const;
  std::string partnerAddressOf(const std::string& card) const;

  /// Back to how it started: cards that came later are out, every cable is in, nothing is configured but
  /// cards that are down. Cards that were there at the start and were taken out stay out.
  void reset();

  /// A folder that host and guest (as /results) both write to.
  const std::filesystem::path& results() const;

 private:
  struct State;
  size_t numberOf(const std::string& card) const;
  void loadDrivers();

  std::unique_ptr<State> state_;
};

}  // namespace ZEB::guest
