// What a console makes of itself in the namespace root/interop.
#pragma once

#include <functional>
#include <string>

namespace ZebManager {

/// One filter, and listeners that are subscribed to it.
class Console {
 public:
  /// Performs an operation of the command-line WBEM client ("ci", "di") on an object of root/interop, with
  /// the assignments that a new instance needs; has to see to it that it succeeds.
  using Perform = std::function<void(const std::string& operation, const std::string& object,
                                     const std::string& assignments)>;

  Console(std::string systemName, Perform perform);

  /// All alerts of the plug-in.
  void makeFilter() const;
  void makeListener(const std::string& name, const std::string& url) const;
  void subscribe(const std::string& listener) const;
  void unsubscribe(const std::string& listener) const;

 private:
  std::string keys(const std::string& className, const std::string& name) const;
  std::string ends(const std::string& listener) const;

  std::string _systemName;
  Perform _perform;
};

}  // namespace ZebManager
