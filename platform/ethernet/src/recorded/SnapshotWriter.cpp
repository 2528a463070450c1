#include "recorded/SnapshotWriter.h"

#include <nlohmann/json.hpp>

#include "recorded/Describe.h"
#include "recorded/Format.h"
#include "recorded/Names.h"

namespace ZEB::ethernet {
namespace {

using Json = nlohmann::ordered_json;

/// Writes what is known into one JSON object.
class Writer {
 public:
  explicit Writer(Json& object) : _object(object) {}

  template <class T>
  void operator()(const char* key, T& value) {
    put(key, write(value));
  }
  void flags(const char* key, std::optional<std::uint32_t>& value) {
    put(key, value ? Json(flagNames(*value)) : Json());
  }
  void operState(const char* key, std::optional<std::uint8_t>& value) {
    put(key, value ? Json(std::string(operStateName(*value))) : Json());
  }

 private:
  void put(const char* key, Json value) {
    if (!value.is_null() && value != Json::object()) _object[key] = std::move(value);
  }

  template <class T>
  static Json write(std::optional<T>& value) {
    return value ? write(*value) : Json();
  }
  template <class T>
  static Json write(std::shared_ptr<const T>& value) {
    if (!value) return Json();
    T copy = *value;
    return write(copy);
  }
  template <class T>
  requires std::is_arithmetic_v<T>
  static Json write(T& value) { return value; }
  static Json write(std::string& value) { return value.empty() ? Json() : Json(value); }
  static Json write(HardwareAddress& value) { return toText(value); }
  static Json write(IpAddress& value) { return toText(value); }
  static Json write(IpFamily& value) { return std::string(ipFamilyName(value)); }
  static Json write(SlotKind& value) { return static_cast<int>(value); }
  static Json write(PciAddress& value) { return toText(value); }
  static Json write(LinkModes& value);
  template <class T>
  static Json write(std::vector<T>& values) {
    Json list = Json::array();
    for (T& value : values) list.push_back(write(value));
    return list;
  }
  template <class T>
  requires requires(T& part, Writer& writer) { describe(part, writer); }
  static Json write(T& part) {
    Json object = Json::object();
    Writer writer(object);
    describe(part, writer);
    return object;
  }

  Json& _object;
};

Json Writer::write(LinkModes& value) {
  Json names = Json::array();
  for (std::size_t bit = 0; bit < value.size(); ++bit) {
    if (value[bit] && !linkModeName(bit).empty()) names.push_back(std::string(linkModeName(bit)));
  }
  return names;
}

}  // namespace

std::string writeSnapshot(HostSnapshot snapshot) {
  Json root = {{"format", kSnapshotFormat}, {"version", kFormatVersion}};
  Writer writer(root);
  describe(snapshot, writer);
  // Texts that came from hardware need not be UTF-8.
  return root.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace ZEB::ethernet
