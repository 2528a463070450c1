#pragma once

#include <memory>
#include <optional>
#include <string>

namespace ZEB::ethernet {

class Inventory;

/// An inventory of its own over a recorded snapshot or timeline; the file is read when first asked for.
std::shared_ptr<Inventory> recordedInventory(const std::string& file, bool includeVirtual);

/// What is wrong with a recorded snapshot or timeline, in one line that names the file and the place; nothing
/// when it can be played back.
std::optional<std::string> checkRecording(const std::string& file);

/// An inventory of its own over the kernel, for the network namespace of the thread that first asks it.
std::shared_ptr<Inventory> kernelInventory(bool includeVirtual);

}  // namespace ZEB::ethernet
