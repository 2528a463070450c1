#include "cmpicpp/CmpiName.h"

namespace CmpiCpp {
namespace {

// CIM names are ASCII, whatever locale the object manager runs in.
constexpr char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

}  // namespace

bool CmpiName::equal(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

std::size_t CmpiName::hash(std::string_view name) {
  std::size_t hash = 0xcbf29ce484222325;  // FNV-1a
  for (char c : name) hash = (hash ^ static_cast<unsigned char>(lower(c))) * 0x100000001b3;
  return hash;
}

}  // namespace CmpiCpp
