#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "MemoryHost.h"
#include "Plugin.h"
#include "recorded/SnapshotWriter.h"

namespace ZEB::test {

/// What the plug-in builds of a host that is put together in memory.
class BuildTest : public ProviderTest {
 protected:
  /// A port that has a network address, and with it a LAN endpoint.
  ethernet::LinkFacts& addPort(const std::string& name) {
    auto& link = host.addPort(name);
    link.address = ethernet::parseHardwareAddress("00:1a:2b:3c:4d:5e");
    return link;
  }
  void play() {
    const auto file = folder / "host.json";
    std::ofstream(file) << ethernet::writeSnapshot(host.snapshot());
    serve(file.string());
  }
  Inventory objects() {
    play();
    Plugin plugin(broker);
    return objectsOf(plugin);
  }
  Inventory associations() {
    play();
    Plugin plugin(broker);
    return associationsOf(plugin);
  }
  /// The classes of everything that is built, in the order of building.
  std::vector<std::string> built() {
    play();
    log->clear();
    Plugin plugin(broker);
    std::vector<std::string> classes;
    for (const auto& line : log->lines()) {
      // What was made before the build began is no part of it.
      if (line.text == "_cmpiManagedInstanceFactory") classes.clear();
      const auto colon = line.source.find(':');
      if (line.text == "cxtor()" && colon != std::string::npos) {
        classes.push_back(line.source.substr(colon + 1));
      }
    }
    return classes;
  }

  MemoryHost host;
};

using Names = std::vector<std::string>;

}  // namespace ZEB::test
