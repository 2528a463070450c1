#include "isolation/Handover.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace ZebManager {
namespace {

constexpr char kVariable[] = "ZEB_HANDOVER";
constexpr std::size_t kMostBytes = std::size_t{16} << 20;
/// Of what was read that is worth to be given back.
constexpr std::int64_t kWorthwhile = std::int64_t{1} << 20;

}  // namespace

void Handover::apply(std::string_view lines) {
  for (std::size_t end = 0; (end = lines.find('\n')) != std::string_view::npos; lines.remove_prefix(end + 1))
    applyLine(lines.substr(0, end));
}

void Handover::applyLine(std::string_view line) {
  if (line.empty()) return;
  const char kind = line.front();
  line.remove_prefix(1);
  const std::string_view subject = line.substr(0, line.find(' '));
  if (kind != '=' && kind != '+' && kind != '-') return;
  if (const auto before = _texts.find(subject); before != _texts.end()) {
    _bytes -= before->first.size() + before->second.size();
    _texts.erase(before);
  }
  if (kind == '-' || subject.size() == line.size() || _bytes + line.size() > kMostBytes) return;
  _texts.emplace(subject, line.substr(subject.size() + 1));
  _bytes += line.size() - 1;
}

std::string Handover::text() const {
  std::string all;
  for (const auto& [subject, text] : _texts) all += '=' + subject + ' ' + text + '\n';
  return all;
}

HandoverFile::HandoverFile(std::string_view begin) : _file(memfd_create("zeb-handover", MFD_CLOEXEC)) {
  unsetenv(kVariable);
  if (!_file || write(_file.get(), begin.data(), begin.size()) != static_cast<ssize_t>(begin.size())) return;
  setenv(kVariable, ("/proc/self/fd/" + std::to_string(_file.get())).c_str(), 1);
}

std::string HandoverFile::read() const {
  std::string lines;
  std::array<char, 16384> buffer{};
  std::int64_t at = _offset;
  for (ssize_t got = 0; (got = pread(_file.get(), buffer.data(), buffer.size(), at)) > 0; at += got)
    lines.append(buffer.data(), static_cast<std::size_t>(got));
  lines.resize(lines.rfind('\n') + 1);
  return lines;
}

std::string HandoverFile::taken(std::string lines) {
  _offset += static_cast<std::int64_t>(lines.size());
  if (_offset - _given > kWorthwhile) {
    const std::int64_t whole = _offset / kWorthwhile * kWorthwhile;
    fallocate(_file.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, _given, whole - _given);
    _given = whole;
  }
  _all.apply(lines);
  return lines;
}

std::string HandoverFile::takeAll() {
  const std::lock_guard lock(_mutex);
  return taken(read());
}

std::string HandoverFile::settled() const {
  std::string lines = read();
  std::size_t end = 0;
  while (end < lines.size() && lines[end] != '+') end = lines.find('\n', end) + 1;
  lines.resize(end);
  return lines;
}

std::string HandoverFile::takeWhole() {
  const std::lock_guard lock(_mutex);
  taken(settled());
  return _all.text();
}

}  // namespace ZebManager
