#include "Machine.h"

#include <cstdio>
#include <fstream>

namespace ZEB::test {
namespace {

const char* boolean(bool value) {
  return value ? "true" : "false";
}

void replace(const std::filesystem::path& file, const std::string& text) {
  const std::filesystem::path partial = file.string() + ".part";
  std::ofstream(partial) << text;
  std::filesystem::rename(partial, file);
}

/// What only a port has, but for where it sits.
std::string textOf(const Machine::Settings& settings) {
  const std::string supported = R"("wakeOnLanSupported": 32, "wakeOnLanEnabled": )";
  return R"(, "mtu": )" + std::to_string(settings.frameSize) + R"(, "ethtool": {"speed": )" +
         std::to_string(settings.megabits) + ", " + supported + (settings.wakesOnLan ? "32" : "0") +
         R"(}, "driver": {"name": "net", "version": ")" + std::to_string(settings.driverVersion) +
         R"(", "firmwareVersion": ")" + std::to_string(settings.firmwareVersion) +
         R"("}, "statistics": {"rxPackets": )" + std::to_string(settings.packets) +
         R"(, "txPackets": 2, "rxBytes": 3, "txBytes": 4})";
}

std::string joined(const std::vector<std::string>& parts) {
  std::string all;
  for (const std::string& part : parts) all += (all.empty() ? "" : ",\n") + part;
  return "[" + all + "]";
}

}  // namespace

std::string Machine::addressOf(std::uint32_t number) {
  char text[18];
  std::snprintf(text, sizeof text, "02:00:00:00:%02x:%02x", number / 256 % 256, number % 256);
  return text;
}

std::uint32_t Machine::add(Interface interface) {
  interfaces.emplace(_next, std::move(interface));
  return _next++;
}

void Machine::remove(std::uint32_t number) {
  interfaces.erase(number);
  for (const std::uint32_t vlan : all(Kind::Vlan)) {
    if (interfaces.contains(vlan) && interfaces.at(vlan).carriedBy == number) remove(vlan);
  }
  for (auto& [index, other] : interfaces) {
    if (other.team == number) other.team = 0;
  }
}

std::vector<std::uint32_t> Machine::all(Kind kind) const {
  std::vector<std::uint32_t> numbers;
  for (const auto& [number, interface] : interfaces) {
    if (interface.kind == kind) numbers.push_back(number);
  }
  return numbers;
}

std::vector<std::uint32_t> Machine::membersOf(std::uint32_t team) const {
  std::vector<std::uint32_t> numbers;
  for (const auto& [number, interface] : interfaces) {
    if (interface.team == team && team != 0) numbers.push_back(number);
  }
  return numbers;
}

void Machine::play(const std::filesystem::path& file) const {
  std::vector<std::string> links, addresses, routes;
  for (const auto& [number, interface] : interfaces) {
    const std::string index = R"({"index": )" + std::to_string(number);
    links.push_back(text(number, interface));
    for (const std::string& address : interface.addresses) {
      const bool isIPv6 = address.find(':') != std::string::npos;
      addresses.push_back(index + R"(, "address": ")" + address + R"(", "prefixLength": )" +
                          (isIPv6 ? "64" : "24") + R"(, "flags": 128})");
    }
    if (interface.gateway != 0) {
      routes.push_back(index + R"(, "gateway": ")" +
                       (interface.gateway == 4 ? "10.0.0.254" : "2001:db8::fe") +
                       R"(", "metric": 1, "table": 254})");
    }
  }
  replace(file, R"({"format": "zeb-host-snapshot", "version": 1, "time": 1700000000, "links": )" +
                    joined(links) + R"(, "addresses": )" + joined(addresses) + R"(, "routes": )" +
                    joined(routes) + "}");
}

void Machine::spoil(const std::filesystem::path& file) {
  replace(file, "{");
}

std::string Machine::text(std::uint32_t number, const Interface& interface) {
  const bool link = interface.hasLink();
  std::string text = R"({"index": )" + std::to_string(number) + R"(, "name": ")" + interface.name +
                     R"(", "type": 1, "address": ")" + addressOf(number) + R"(", "permanentAddress": ")" +
                     addressOf(number) + R"(", "flags": [)" + (interface.up ? R"("UP")" : "") +
                     (link ? R"(, "LOWER_UP")" : "") + R"(], "carrier": )" + boolean(link) +
                     R"(, "operState": ")" + (link ? "UP" : "DOWN") + R"(")";
  switch (interface.kind) {
    case Kind::Port: {
      const std::string device = "0000:" + std::to_string(10 + interface.card) + ":00.0";
      text += R"(, "parentBus": "pci", "parentDevice": ")" + device +
              R"(", "hardware": {"bus": "pci", "device": ")" + device + R"(", "pci": ")" + device + R"("})" +
              textOf(interface.settings);
      if (interface.team != 0) {
        text += R"(, "masterIndex": )" + std::to_string(interface.team) + R"(, "bondMember": {"state": )" +
                (interface.backup ? "1" : "0") + R"(, "miiStatus": )" + (link ? "0}" : "2}");
      }
      break;
    }
    case Kind::Team:
      text += R"(, "kind": "bond", "bond": {"mode": 1})";
      break;
    case Kind::Vlan:
      text += R"(, "kind": "vlan", "vlanId": 7, "lowerIndex": )" + std::to_string(interface.carriedBy);
      break;
  }
  return text + "}";
}

}  // namespace ZEB::test
