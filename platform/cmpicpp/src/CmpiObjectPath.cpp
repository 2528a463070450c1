#include "cmpicpp/CmpiObjectPath.h"

#include <algorithm>

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {

struct CmpiObjectPath::Representation {
  std::string nameSpace;
  std::string host;
  CmpiName className;
  std::vector<Key> keys;
  std::size_t hash = 0;

  void rehash() {
    hash = classHash(nameSpace, className.view());
    // A sum, because keys are equal in any order.
    for (const Key& key : keys) hash += keyHash(key.name.view(), key.value.keyHash());
  }
};

// Every empty path shares one representation.
const std::shared_ptr<const CmpiObjectPath::Representation> CmpiObjectPath::kEmpty =
    std::make_shared<const Representation>();

CmpiObjectPath::CmpiObjectPath() : _representation(kEmpty) {}

CmpiObjectPath::CmpiObjectPath(std::string_view nameSpace, CmpiName className)
    : CmpiObjectPath(nameSpace, std::move(className), "", {}) {}

CmpiObjectPath::CmpiObjectPath(std::string_view nameSpace, CmpiName className, std::string_view host,
                               std::vector<Key> keys) {
  change({std::string(nameSpace), std::string(host), std::move(className), std::move(keys)});
}

void CmpiObjectPath::change(Representation&& changed) {
  changed.rehash();
  _representation = std::make_shared<const Representation>(std::move(changed));
}

const std::string& CmpiObjectPath::nameSpace() const {
  return _representation->nameSpace;
}
const std::string& CmpiObjectPath::host() const {
  return _representation->host;
}
const CmpiName& CmpiObjectPath::className() const {
  return _representation->className;
}
const std::vector<CmpiObjectPath::Key>& CmpiObjectPath::keys() const {
  return _representation->keys;
}
std::size_t CmpiObjectPath::hash() const {
  return _representation->hash;
}

std::size_t CmpiObjectPath::classHash(std::string_view nameSpace, std::string_view className) {
  return CmpiName::hash(nameSpace) * 31 + CmpiName::hash(className);
}
std::size_t CmpiObjectPath::keyHash(std::string_view name, std::size_t valueHash) {
  return CmpiName::hash(name) ^ valueHash * 0x9e3779b97f4a7c15;
}

const CmpiData* CmpiObjectPath::findKey(std::string_view name) const {
  const auto found = std::find_if(keys().begin(), keys().end(),
                                  [&](const Key& key) { return CmpiName::equal(key.name.view(), name); });
  return found == keys().end() ? nullptr : &found->value;
}

const CmpiData& CmpiObjectPath::getKey(std::string_view name) const {
  if (const CmpiData* value = findKey(name)) return *value;
  throw CmpiStatus(CMPI_RC_ERR_NO_SUCH_PROPERTY, "no key " + std::string(name));
}

void CmpiObjectPath::setHost(const CmpiName& host) {
  Representation changed = *_representation;
  changed.host = host.str();
  change(std::move(changed));
}

void CmpiObjectPath::setNameSpace(std::string_view nameSpace) {
  Representation changed = *_representation;
  changed.nameSpace = nameSpace;
  change(std::move(changed));
}

void CmpiObjectPath::addKey(const CmpiName& name, const CmpiData& value) {
  Representation changed = *_representation;
  auto key =
      std::find_if(changed.keys.begin(), changed.keys.end(), [&](const Key& k) { return k.name == name; });
  if (key == changed.keys.end()) {
    changed.keys.push_back({name, value});
  } else {
    key->value = value;
  }
  change(std::move(changed));
}

void CmpiObjectPath::addKey(const CmpiName& name, std::string_view value) {
  addKey(name, CmpiData(value));
}
void CmpiObjectPath::addKey(const CmpiName& name, const CmpiObjectPath& value) {
  addKey(name, CmpiData(value));
}

bool operator==(const CmpiObjectPath& a, const CmpiObjectPath& b) {
  if (a._representation == b._representation) return true;
  if (a.hash() != b.hash() || a.keys().size() != b.keys().size()) return false;
  if (!(a.className() == b.className()) || !CmpiName::equal(a.nameSpace(), b.nameSpace())) return false;
  return std::all_of(a.keys().begin(), a.keys().end(), [&](const CmpiObjectPath::Key& key) {
    const CmpiData* other = b.findKey(key.name.view());
    return other && CmpiData::sameKey(key.value, *other);
  });
}

namespace {

void appendQuoted(std::string& text, std::string_view value) {
  text += '"';
  for (char c : value) {
    if (c == '"' || c == '\\') text += '\\';
    text += c;
  }
  text += '"';
}

void appendKeyValue(std::string& text, const CmpiData& value) {
  if (value.isNull()) return;
  switch (value.type()) {
    case CMPI_boolean:
      text += value.asBoolean() ? "TRUE" : "FALSE";
      break;
    case CMPI_string:
      appendQuoted(text, value.asString());
      break;
    case CMPI_dateTime:
      appendQuoted(text, value.asDateTime().str());
      break;
    case CMPI_ref:
      appendQuoted(text, value.asReference().str());
      break;
    case CMPI_real32:
    case CMPI_real64:
      text += std::to_string(value.asReal());
      break;
    case CMPI_sint8:
    case CMPI_sint16:
    case CMPI_sint32:
    case CMPI_sint64:
      text += std::to_string(value.asSigned());
      break;
    default:
      text += std::to_string(value.asUnsigned());
  }
}

}  // namespace

std::string CmpiObjectPath::str() const {
  constexpr std::size_t kUsualSize = 175;
  std::string text;
  text.reserve(kUsualSize + 2 * host().size());
  if (!host().empty()) text.append("//").append(host()).append("/");
  if (!nameSpace().empty()) text.append(nameSpace()).append(":");
  text += className().view();
  char separator = '.';
  for (const Key& key : keys()) {
    text += separator;
    text += key.name.view();
    text += '=';
    appendKeyValue(text, key.value);
    separator = ',';
  }
  return text;
}

}  // namespace CmpiCpp
