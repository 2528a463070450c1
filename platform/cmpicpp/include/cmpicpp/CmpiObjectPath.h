#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cmpicpp/CmpiName.h"

namespace CmpiCpp {

class CmpiData;

/// A CIM object path as a plain value, apart from any object manager. Copies share one immutable
/// representation, so copying is cheap and reading a path from several threads is safe.
///
/// Paths are equal when namespace and class (without regard to case) and keys are, whatever the keys' order
/// and whatever the host. An empty path has neither namespace nor class.
class CmpiObjectPath {
 public:
  struct Key;

  CmpiObjectPath();
  CmpiObjectPath(std::string_view nameSpace, CmpiName className);
  CmpiObjectPath(std::string_view nameSpace, CmpiName className, std::string_view host,
                 std::vector<Key> keys);

  /// The path that a text form (`str`) with namespace and keys names, all of whose keys are text; nothing for
  /// any other text.
  static std::optional<CmpiObjectPath> parse(std::string_view text);

  const std::string& nameSpace() const;
  const std::string& host() const;
  const CmpiName& className() const;
  const std::vector<Key>& keys() const;
  bool empty() const { return className().empty(); }

  /// The value of a key, or null when the path has none of that name. Valid as long as the path.
  const CmpiData* findKey(std::string_view name) const;
  /// Throws `CmpiStatus` with `CMPI_RC_ERR_NO_SUCH_PROPERTY` when there is no such key.
  const CmpiData& getKey(std::string_view name) const;

  void setHost(const CmpiName& host);
  void setNameSpace(std::string_view nameSpace);
  void addKey(const CmpiName& name, std::string_view value);
  void addKey(const CmpiName& name, const CmpiObjectPath& value);
  void addKey(const CmpiName& name, const CmpiData& value);

  /// `//host/namespace:Class.Key1="text",Key2=5`: keys in the order in which they were added, references as
  /// quoted text, what is missing left out.
  std::string str() const;

  std::size_t hash() const;
  /// The two parts of a path's hash: that of namespace and class, to which that of each key is added. With
  /// them a path need not be made to know its hash.
  static std::size_t classHash(std::string_view nameSpace, std::string_view className);
  static std::size_t keyHash(std::string_view name, std::size_t valueHash);
  friend bool operator==(const CmpiObjectPath& a, const CmpiObjectPath& b);

 private:
  struct Representation;
  explicit CmpiObjectPath(std::shared_ptr<const Representation> representation);
  void change(Representation&& changed);

  static const std::shared_ptr<const Representation> kEmpty;

  std::shared_ptr<const Representation> _representation;
};

}  // namespace CmpiCpp

template <>
struct std::hash<CmpiCpp::CmpiObjectPath> {
  std::size_t operator()(const CmpiCpp::CmpiObjectPath& path) const { return path.hash(); }
};
