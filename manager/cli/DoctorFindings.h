// What was found, one line each.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ZebManager {

struct DoctorFindings {
  enum class State { Good, Note, Bad };

  struct Finding {
    std::string what;
    State state = State::Good;
    std::string text;
  };

  void good(const std::string& what, const std::string& text) { all.push_back({what, State::Good, text}); }
  /// Worth knowing, and nothing wrong.
  void note(const std::string& what, const std::string& text) { all.push_back({what, State::Note, text}); }
  void bad(const std::string& what, const std::string& text) { all.push_back({what, State::Bad, text}); }
  /// Bad when there is a failure.
  void add(const std::string& what, const std::string& text, const std::string& failure) {
    failure.empty() ? good(what, text) : bad(what, text + ": " + failure);
  }

  bool healthy() const;

  std::vector<Finding> all;
  std::string report;                     ///< of the plug-in that runs, as JSON; empty when there is none
  std::optional<std::int64_t> reportAge;  ///< seconds
};

std::string textOfFindings(const DoctorFindings& findings, bool colour);
/// `healthy`, `findings`, and the running plug-in's `report` with its age.
std::string jsonOfFindings(const DoctorFindings& findings);

}  // namespace ZebManager
