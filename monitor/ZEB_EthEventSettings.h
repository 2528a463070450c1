#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "classes/port/ManagedObject.h"
#include "common/DataStore.h"
#include "monitor/alerts/EventSettings.h"

namespace ZEB {

/// The one instance of configurable settings, kept in a data store of its own. Readers need no lock: a value
/// is the one before or after a change.
class ZEB_EthEventSettings : public ManagedObject, public EventSettings {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthEventSettings";

  /// Takes the values from the store; what is not there starts with its default and is written there. Without
  /// a store the defaults hold, and changes are not kept.
  ZEB_EthEventSettings(const Logger& logger, const std::string& nameSpace);

  /// With the values that the store has now.
  CmpiCpp::CmpiInstance makeInstance() override;

  /// The values and the store, which knows more than a new one can read while the file is held or damaged.
  std::any memory() const override;
  void remember(const std::any& memory) override;

  /// Takes over what other processes have changed in the store since, as if a client had changed it here.
  void follow();

  std::uint32_t number(EventSetting setting) const { return value(setting); }
  bool isOn(EventSetting setting) const override { return value(setting) != 0; }
  bool pollingDisabled() const { return _pollingDisabled; }

  /// Seconds since the epoch; 0 until the build sets it.
  std::int64_t lastPollTime() const { return _lastPollTime; }
  void setLastPollTime(std::int64_t seconds) { _lastPollTime = seconds; }

  /// Takes the listed properties over from `instance`, all settings when the list is null. Under the
  /// provider's lock.
  ///
  /// Throws `CmpiStatus`: `CMPI_RC_ERR_INVALID_PARAMETER` for an unknown name at the head of the list or a
  /// value of the wrong type, `CMPI_RC_ERR_FAILED` when the store does not keep a value, which then stays as
  /// it was. What was changed before stays changed. An unknown name further down the list is waited at for
  /// ever, by calling `waitForEver` again and again; it may leave with an exception, to let go of what the
  /// caller holds.
  void modify(const CmpiCpp::CmpiInstance& instance, CmpiCpp::CmpiPropertyList names,
              void (*waitForEver)() = sleepOn);

  static constexpr std::size_t kCount = 13;

 private:
  using Selection = std::array<bool, kCount>;
  struct Memory {
    std::shared_ptr<DataStore> store;
    std::shared_ptr<const DataStore::Values> followed;
    std::array<std::uint32_t, kCount> values;
  };

  std::uint32_t value(EventSetting setting) const { return _values[static_cast<std::size_t>(setting)]; }
  void takeOver();
  void change(std::size_t index, std::uint32_t value);
  static void sleepOn();
  Selection select(CmpiCpp::CmpiPropertyList names, void (*waitForEver)()) const;
  void modifyOne(std::size_t index, const CmpiCpp::CmpiData& data);

  std::array<std::atomic<std::uint32_t>, kCount> _values{};
  std::atomic<std::int64_t> _lastPollTime{0};
  std::atomic<bool> _pollingDisabled{false};
  std::shared_ptr<DataStore> _store;  ///< null when it could not be opened
  mutable std::mutex _changing;       ///< from the look at the store to the change that follows from it
  std::shared_ptr<const DataStore::Values> _followed;  ///< what the values were last taken from
};

}  // namespace ZEB
