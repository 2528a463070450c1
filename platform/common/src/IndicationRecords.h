#pragma once

#include <map>
#include <memory>
#include <string>

#include "common/IndDBRec.h"

namespace ZEB {

/// One reading of a records file, shared by everybody who asks for the file until it changes.
class IndicationRecords {
 public:
  /// A record, or what is wrong with it.
  struct Entry {
    IndDBRec record;
    std::string failure;
  };

  /// The current contents. Safe from several threads.
  static std::shared_ptr<const IndicationRecords> of(const std::string& file);

  explicit IndicationRecords(const std::string& file);

  /// What is wrong with the whole file; empty when nothing is.
  const std::string& failure() const { return _failure; }
  /// That, or what is wrong with the first record that has something wrong.
  std::string firstFailure() const;
  /// Null when there is no such record.
  const Entry* find(const std::string& name, int eventId) const;

 private:
  std::string _failure;
  std::map<std::string, std::map<int, Entry>> _entries;
};

}  // namespace ZEB
