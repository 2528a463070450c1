#include "common/IndicationDB.h"

#include <dlfcn.h>

#include <filesystem>

#include "IndicationRecords.h"
#include "common/Configuration.h"

namespace ZEB {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFile = "indication-records.toml";

fs::path findOwnFile() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&findOwnFile), &info) == 0 || !info.dli_fname) return {};
  std::error_code error;
  return fs::canonical(info.dli_fname, error);
}

/// The file that this code was loaded from: the plug-in, or a program that it is linked into. Found when it
/// is loaded: whoever unloads it holds the loader's lock while it waits for a pass to end.
const fs::path kOwnFile = findOwnFile();

/// Without a file anywhere, its first place, so that the log names one.
std::string installedFile() {
  std::error_code error;
  const fs::path own = kOwnFile.parent_path();
  const fs::path beside = own / kFile;
  if (fs::exists(beside, error)) return beside;
  for (fs::path folder = own; folder.has_relative_path(); folder = folder.parent_path()) {
    for (const char* place : {"schema", "share/zeb"}) {
      if (fs::path file = folder / place / kFile; fs::exists(file, error)) return file;
    }
  }
  return beside;
}

std::string recordsFile() {
  const auto configuration = Configuration::current();
  return configuration->recordsFile.empty() ? installedFile() : configuration->recordsFile;
}

}  // namespace

IndicationDB::IndicationDB(const Logger& logger, const std::string& name)
    : _logger(logger), _name(name), _records(IndicationRecords::of(recordsFile())) {
  if (!_records->failure().empty()) {
    _logger.error("indication records cannot be read: %s", _records->failure());
  }
}

IndicationDB::~IndicationDB() = default;

IndicationRecordsState IndicationDB::state() {
  const std::string file = recordsFile();
  return {file, IndicationRecords::of(file)->firstFailure()};
}

int IndicationDB::getRecord(int eventId, IndDBRec& record) const {
  enum : int { kFound = 0, kNotThere = 1, kDamaged = 2 };
  const IndicationRecords::Entry* entry = _records->find(_name, eventId);
  if (!entry) return kNotThere;
  if (!entry->failure.empty()) {
    _logger.error("indication record cannot be used: %s", entry->failure);
    return kDamaged;
  }
  record = entry->record;
  return kFound;
}

}  // namespace ZEB
