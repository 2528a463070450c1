#pragma once

#include <memory>
#include <string>

#include "common/IndDBRec.h"
#include "common/Logger.h"

namespace ZEB {

class IndicationRecords;

/// Which file the records are read from, and what is wrong with it or with the first bad record in it.
struct IndicationRecordsState {
  std::string file;
  std::string failure;  ///< empty when nothing is
};

/// The records of one class of indications, from a text file that a site may edit or translate. The file is
/// the one that the configuration names, else `indication-records.toml`, looked for beside the library that
/// this is linked into, then as `schema/` and `share/zeb/` of its folder and each folder above.
///
/// Opening it anew is cheap: the process shares what was read, and reads again only when the file has
/// changed. A file that is missing or no TOML is logged when it is opened, a record that cannot be used when
/// it is asked for.
class IndicationDB {
 public:
  /// `name` is the part of the file that holds the records.
  IndicationDB(const Logger& logger, const std::string& name);
  ~IndicationDB();
  IndicationDB(const IndicationDB&) = delete;
  IndicationDB& operator=(const IndicationDB&) = delete;

  static IndicationRecordsState state();

  /// Returns 0 and fills `record`, or non-zero and leaves it alone.
  int getRecord(int eventId, IndDBRec& record) const;

 private:
  Logger _logger;
  std::string _name;
  std::shared_ptr<const IndicationRecords> _records;
};

}  // namespace ZEB
