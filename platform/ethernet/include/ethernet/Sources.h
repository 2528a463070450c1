#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace ZEB::ethernet {

class Inventory;

/// An inventory of its own over a recorded snapshot or timeline; the file is read when first asked for.
/// Interfaces that are switched on settle for `settleTime`; with 0 they do not.
std::shared_ptr<Inventory> recordedInventory(const std::string& file, bool includeVirtual,
                                             std::chrono::seconds settleTime = {});

/// What is wrong with a recorded snapshot or timeline, in one line that names the file and the place; nothing
/// when it can be played back.
std::optional<std::string> checkRecording(const std::string& file);

/// An inventory of its own over the kernel, for the network namespace of the thread that first asks it.
std::shared_ptr<Inventory> kernelInventory(bool includeVirtual, std::chrono::seconds settleTime = {});

/// Whether this process was started for one question (`ZEB_ONE_QUESTION`) and is gone when it is answered.
/// Not the site's to set.
bool isForOneQuestion();

}  // namespace ZEB::ethernet
