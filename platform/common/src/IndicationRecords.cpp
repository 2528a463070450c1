#include "IndicationRecords.h"

#include <sys/stat.h>
#include <toml++/toml.h>

#include <array>
#include <charconv>
#include <filesystem>
#include <limits>
#include <mutex>
#include <stdexcept>

namespace ZEB {
namespace {

[[noreturn]] void reject(const char* field, const char* expected) {
  throw std::invalid_argument(std::string(field) + " has to be " + expected);
}

template <auto Member>
void readText(IndDBRec& record, const char* field, const toml::node& node) {
  const auto* text = node.as_string();
  if (!text || text->get().empty()) reject(field, "a text");
  record.*Member = text->get();
}

template <auto Member>
void readCode(IndDBRec& record, const char* field, const toml::node& node) {
  const auto* number = node.as_integer();
  if (!number || number->get() < 0 || number->get() > std::numeric_limits<std::uint16_t>::max()) {
    reject(field, "a number from 0 to 65535");
  }
  record.*Member = static_cast<std::remove_reference_t<decltype(record.*Member)>>(number->get());
}

void readActions(IndDBRec& record, const char* field, const toml::node& node) {
  const auto* actions = node.as_array();
  if (!actions || actions->empty()) reject(field, "a list of texts");
  for (const toml::node& action : *actions) {
    const auto* text = action.as_string();
    if (!text) reject(field, "a list of texts");
    record.recommendedActions.push_back(text->get());
  }
}

/// A field of a record. All of them have to be there but the other category.
struct Field {
  const char* name;
  void (*read)(IndDBRec&, const char* field, const toml::node&);
  bool optional = false;
};

constexpr Field kFields[] = {
    {"severity", readCode<&IndDBRec::severity>},
    {"summary", readText<&IndDBRec::summary>},
    {"description", readText<&IndDBRec::description>},
    {"alert-type", readCode<&IndDBRec::alertType>},
    {"provider-name", readText<&IndDBRec::providerName>},
    {"recommended-actions", readActions},
    {"category", readCode<&IndDBRec::category>},
    {"other-category", readText<&IndDBRec::otherCategory>, true},
    {"probable-cause", readCode<&IndDBRec::probableCause>},
    {"probable-cause-description", readText<&IndDBRec::probableCauseDescription>},
};

/// Fields that a record lacks come from the part of the file that it stands in.
IndDBRec readRecord(const toml::table& record, const toml::table& part) {
  IndDBRec made;
  for (const Field& field : kFields) {
    const toml::node* node = record.get(field.name);
    if (!node) node = part.get(field.name);
    if (node) {
      field.read(made, field.name, *node);
    } else if (!field.optional) {
      throw std::invalid_argument(std::string(field.name) + " is missing");
    }
  }
  constexpr int kOther = 1;
  if (made.category == kOther && made.otherCategory.empty()) {
    throw std::invalid_argument("other-category is missing, and category is 1");
  }
  return made;
}

std::string placeOf(const std::string& file, const toml::source_region& region) {
  return file + ":" + std::to_string(region.begin.line) + ": ";
}

IndicationRecords::Entry readEntry(const std::string& file, std::string_view id, const toml::table& record,
                                   const toml::table& part) {
  try {
    IndDBRec made = readRecord(record, part);
    made.eventId = id;
    return {made, ""};
  } catch (const std::invalid_argument& error) {
    return {{}, placeOf(file, record.source()) + error.what()};
  }
}

/// What tells one state of a file from another.
struct Stamp {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  std::array<std::int64_t, 4> times{};

  static Stamp of(const std::string& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return {};
    return {status.st_dev,
            status.st_ino,
            status.st_size,
            {status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec, status.st_ctim.tv_nsec}};
  }
  friend bool operator==(const Stamp&, const Stamp&) = default;
};

struct Reading {
  std::string file;
  Stamp stamp;
  std::shared_ptr<const IndicationRecords> records;
};

std::mutex readingMutex;
Reading lastReading;

}  // namespace

std::shared_ptr<const IndicationRecords> IndicationRecords::of(const std::string& file) {
  // Taken before reading: a change in between is then seen the next time.
  const Stamp stamp = Stamp::of(file);
  const std::lock_guard lock(readingMutex);
  if (!lastReading.records || lastReading.file != file || !(lastReading.stamp == stamp)) {
    lastReading = {file, stamp, std::make_shared<const IndicationRecords>(file)};
  }
  return lastReading.records;
}

IndicationRecords::IndicationRecords(const std::string& file) {
  std::error_code error;
  // Reading a directory gives an empty text without any complaint.
  if (std::filesystem::is_directory(file, error)) {
    _failure = file + " is a directory";
    return;
  }
  try {
    const toml::table whole = toml::parse_file(file);
    for (const auto& [name, node] : whole) {
      const toml::table* part = node.as_table();
      if (!part) continue;
      for (const auto& [id, entry] : *part) {
        const toml::table* record = entry.as_table();
        int number = 0;
        const std::string_view digits = id.str();
        const auto end = digits.data() + digits.size();
        if (!record || std::from_chars(digits.data(), end, number).ptr != end) continue;
        _entries[std::string(name.str())].emplace(number, readEntry(file, digits, *record, *part));
      }
    }
  } catch (const toml::parse_error& mistake) {
    const bool hasLine = mistake.source().begin.line > 0;
    _failure = (hasLine ? placeOf(file, mistake.source()) : file + ": ") + std::string(mistake.description());
  }
}

std::string IndicationRecords::firstFailure() const {
  if (!_failure.empty()) return _failure;
  for (const auto& [name, records] : _entries) {
    for (const auto& [id, entry] : records) {
      if (!entry.failure.empty()) return entry.failure;
    }
  }
  return {};
}

const IndicationRecords::Entry* IndicationRecords::find(const std::string& name, int eventId) const {
  const auto part = _entries.find(name);
  if (part == _entries.end()) return nullptr;
  const auto entry = part->second.find(eventId);
  return entry == part->second.end() ? nullptr : &entry->second;
}

}  // namespace ZEB
