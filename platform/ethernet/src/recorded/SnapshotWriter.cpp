#include "recorded/SnapshotWriter.h"

#include <nlohmann/json.hpp>

#include "recorded/Describe.h"
#include "recorded/Format.h"
#include "recorded/Names.h"

namespace ZEB::ethernet {
namespace {

using OrderedJson = nlohmann::ordered_json;

/// Writes what is known into one JSON object.
class Writer {
 public:
  explicit Writer(OrderedJson& object) : _object(object) {}

  template <class T>
  void operator()(const char* key, T& value) {
    put(key, write(value));
  }
  void flags(const char* key, std::optional<std::uint32_t>& value) {
    put(key, value ? OrderedJson(flagNames(*value)) : OrderedJson());
  }
  void operState(const char* key, std::optional<std::uint8_t>& value) {
    put(key, value ? OrderedJson(std::string(operStateName(*value))) : OrderedJson());
  }

 private:
  void put(const char* key, OrderedJson value) {
    if (!value.is_null() && value != OrderedJson::object()) _object[key] = std::move(value);
  }

  template <class T>
  static OrderedJson write(std::optional<T>& value) {
    return value ? write(*value) : OrderedJson();
  }
  template <class T>
  static OrderedJson write(std::shared_ptr<const T>& value) {
    if (!value) return OrderedJson();
    T copy = *value;
    return write(copy);
  }
  template <class T>
  requires std::is_arithmetic_v<T>
  static OrderedJson write(T& value) { return value; }
  static OrderedJson write(std::string& value) { return value.empty() ? OrderedJson() : OrderedJson(value); }
  static OrderedJson write(HardwareAddress& value) { return toText(value); }
  static OrderedJson write(IpAddress& value) { return toText(value); }
  static OrderedJson write(IpFamily& value) { return std::string(ipFamilyName(value)); }
  static OrderedJson write(SlotKind& value) { return static_cast<int>(value); }
  static OrderedJson write(PciAddress& value) { return toText(value); }
  static OrderedJson write(LinkModes& value);
  template <class T>
  static OrderedJson write(std::vector<T>& values) {
    OrderedJson list = OrderedJson::array();
    for (T& value : values) list.push_back(write(value));
    return list;
  }
  template <class T>
  requires requires(T& part, Writer& writer) { describe(part, writer); }
  static OrderedJson write(T& part) {
    OrderedJson object = OrderedJson::object();
    Writer writer(object);
    describe(part, writer);
    return object;
  }

  OrderedJson& _object;
};

OrderedJson Writer::write(LinkModes& value) {
  OrderedJson names = OrderedJson::array();
  for (std::size_t bit = 0; bit < value.size(); ++bit) {
    if (value[bit] && !linkModeName(bit).empty()) names.push_back(std::string(linkModeName(bit)));
  }
  return names;
}

}  // namespace

std::string writeSnapshot(HostSnapshot snapshot) {
  OrderedJson root = {{"format", kSnapshotFormat}, {"version", kFormatVersion}};
  Writer writer(root);
  describe(snapshot, writer);
  // Texts that came from hardware need not be UTF-8.
  return root.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

}  // namespace ZEB::ethernet
