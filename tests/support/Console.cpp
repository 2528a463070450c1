#include "support/Console.h"

#include <utility>

namespace ZebManager {
namespace {

constexpr char kFilterClass[] = "CIM_IndicationFilter";
constexpr char kFilter[] = "cables";
constexpr char kListenerClass[] = "CIM_ListenerDestinationCIMXML";
constexpr char kSubscriptions[] = "root/interop:CIM_IndicationSubscription.";

}  // namespace

Console::Console(std::string systemName, Perform perform)
    : _systemName(std::move(systemName)), _perform(std::move(perform)) {}

void Console::makeFilter() const {
  const std::string named = keys(kFilterClass, kFilter);
  _perform("ci", std::string("root/interop:") + kFilterClass + "." + named,
           named + R"(,QueryLanguage="WQL",Query="SELECT * FROM ZEB_EthernetIndication")");
}

void Console::makeListener(const std::string& name, const std::string& url) const {
  const std::string named = keys(kListenerClass, name);
  _perform("ci", std::string("root/interop:") + kListenerClass + "." + named,
           named + ",Destination=\"" + url + "\"");
}

void Console::subscribe(const std::string& listener) const {
  _perform("ci", kSubscriptions + ends(listener), ends(listener));
}

void Console::unsubscribe(const std::string& listener) const {
  _perform("di", kSubscriptions + ends(listener), "");
}

std::string Console::keys(const std::string& className, const std::string& name) const {
  return "SystemCreationClassName=\"ZEB_ComputerSystem\",SystemName=\"" + _systemName +
         "\",CreationClassName=\"" + className + "\",Name=\"" + name + "\"";
}

std::string Console::ends(const std::string& listener) const {
  return std::string("Filter=root/interop:") + kFilterClass + "." + keys(kFilterClass, kFilter) +
         ",Handler=root/interop:" + kListenerClass + "." + keys(kListenerClass, listener);
}

}  // namespace ZebManager
