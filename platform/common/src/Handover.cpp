#include "common/Handover.h"

#include <fcntl.h>
#include <unistd.h>

#include <fstream>

namespace ZEB {
namespace {

Handover process;

}  // namespace

Handover& Handover::current() {
  return process;
}

void Handover::open(const char* file) {
  const std::lock_guard lock(_mutex);
  _left.clear();
  _noted.clear();
  _file = file ? FileDescriptor(::open(file, O_WRONLY | O_APPEND | O_CLOEXEC)) : FileDescriptor();
  if (!_file) return;
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line) && !lines.eof();) {
    const std::size_t blank = line.find(' ');
    if (blank == std::string::npos || (line.front() != '=' && line.front() != '+')) continue;
    _left[line.substr(1, blank - 1)] = line.substr(blank + 1);
  }
}

bool Handover::pending() const {
  const std::lock_guard lock(_mutex);
  return !_left.empty();
}

std::optional<std::string> Handover::of(const std::string& subject) const {
  const std::lock_guard lock(_mutex);
  const auto left = _left.find(subject);
  return left == _left.end() ? std::nullopt : std::optional(left->second);
}

void Handover::taken() {
  const std::lock_guard lock(_mutex);
  _noted = std::move(_left);
  _left.clear();
}

void Handover::note(const std::string& subject, const std::string& text, Alert alert) {
  const std::lock_guard lock(_mutex);
  if (!_file || !_left.empty() || subject.empty()) return;
  std::string& noted = _noted[subject];
  if (noted == text) return;
  noted = text;
  write(alert == Alert::Follows ? '+' : '=', subject + " " + text);
}

// Whole or not at all, as far as whoever reads is concerned: what has no end is no line yet.
void Handover::write(char kind, const std::string& line) {
  if (!_file) return;
  const std::string whole = kind + line + "\n";
  if (::write(_file.get(), whole.data(), whole.size()) != static_cast<ssize_t>(whole.size())) _file = {};
}

}  // namespace ZEB
