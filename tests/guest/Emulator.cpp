#include "Emulator.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <iterator>
#include <thread>

#include "GuestError.h"
#include "support/Content.h"

namespace ZEB::guest {
namespace {

using namespace std::chrono_literals;
using test::contentOf;

/// As long as other guests may keep this one waiting.
constexpr auto kQueue = 900s;

FileDescriptor takeTurn() {
  const auto path = std::filesystem::temp_directory_path() / "one-guest-at-a-time.lock";
  FileDescriptor lock(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666));
  if (!lock) throw GuestError::fromErrno(path.string());
  const Deadline deadline(kQueue);
  while (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    if (deadline.passed()) throw GuestError("another guest holds " + path.string());
    std::this_thread::sleep_for(100ms);
  }
  return lock;
}

std::filesystem::path made(std::filesystem::path folder) {
  std::filesystem::create_directory(folder);
  return folder;
}

std::vector<std::string> emulatorArguments(const std::filesystem::path& files,
                                           const std::filesystem::path& folder, const Hardware& hardware,
                                           FirstProgram first) {
  const std::string room = folder.string();
  // clang-format off
  std::vector<std::string> arguments = {
      "qemu-system-x86_64", "-nodefaults", "-no-user-config", "-display", "none", "-no-reboot",
      // Never anything but emulation: a /dev/kvm that is there may hang.
      "-accel", "tcg", "-smp", "1", "-m", std::to_string(hardware.memoryMiB),
      "-M", "q35,hpet=off", "-global", "ICH9-LPC.acpi-pci-hotplug-with-bridge-support=off",
      "-kernel", files / "vmlinux", "-initrd", files / "initramfs",
      "-append", "console=ttyS0 quiet panic=-1" + std::string(first == FirstProgram::Systemd ? " guest=systemd" : ""), "-serial", "file:" + room + "/console",
      "-virtfs", "local,path=/,mount_tag=host,security_model=none,readonly=on,multidevs=remap",
      "-virtfs", "local,path=" + room + "/results,mount_tag=results,security_model=none,multidevs=remap",
      "-device", "virtio-serial-pci",
      "-chardev", "socket,id=agent,server=on,wait=off,path=" + room + "/agent",
      "-device", "virtserialport,chardev=agent,name=agent",
      "-qmp", "unix:" + room + "/monitor,server=on,wait=off"};
  // clang-format on
  std::ranges::move(hardwareArguments(hardware), std::back_inserter(arguments));
  return arguments;
}

}  // namespace

Emulator::Emulator(const std::filesystem::path& files, const Hardware& hardware, FirstProgram first)
    : turn_(takeTurn()),
      results_(made(folder_.path() / "results")),
      process_(
          startProgram(emulatorArguments(files, folder_.path(), hardware, first), folder_.path() / "log")) {}

std::string Emulator::lastWords() const {
  return "\n" + contentOf(folder_.path() / "log") + contentOf(folder_.path() / "console");
}

}  // namespace ZEB::guest
