#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "posix/TemporaryFolder.h"

namespace ZEB::ethernet::test {

namespace fs = std::filesystem;

/// A file tree of its own with the parts of sysfs that are read.
class SysTree : public testing::Test {
 protected:
  SysTree() {
    for (const char* bus : {"pci", "usb", "virtio"})
      fs::create_directories(root / "sys/bus" / bus / "devices");
    fs::create_directories(root / "sys/bus/pci/slots");
  }

  void file(const fs::path& path, const std::string& text) { binary(path, text + "\n"); }
  void binary(const fs::path& path, std::string_view bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
  }

  /// A device below `parent`, as a link on its bus.
  fs::path device(const fs::path& parent, const char* bus, const char* name) {
    const fs::path path = parent / name;
    fs::create_directories(path);
    fs::create_directory_symlink(root / "sys/bus" / bus, path / "subsystem");
    fs::create_directory_symlink(path, root / "sys/bus" / bus / "devices" / name);
    return path;
  }

  fs::path pci(const fs::path& parent, const char* name, const char* vendor, const char* id) {
    const fs::path path = device(parent, "pci", name);
    file(path / "vendor", vendor);
    file(path / "device", id);
    file(path / "revision", "0x0b");
    return path;
  }

  /// An interface under its name, on a device if there is one. Replaces the one before it.
  void interface(const std::string& name, std::uint32_t index, const fs::path& device = {}) {
    const fs::path path = root / "sys/class/net" / name;
    fs::remove_all(path);
    file(path / "ifindex", std::to_string(index));
    if (!device.empty()) fs::create_directory_symlink(device, path / "device");
  }

 private:
  TemporaryFolder _directory;

 protected:
  const fs::path root = _directory.path();
};

}  // namespace ZEB::ethernet::test
