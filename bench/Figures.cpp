#include "Figures.h"

#include <iostream>
#include <sstream>

namespace ZebBench {
namespace {

std::string text(double value) {
  std::ostringstream out;
  out.precision(9);
  out << value;
  return out.str();
}

}  // namespace

void Figures::add(const std::string& name, double value) {
  _members += (_members.empty() ? "" : ", ") + ("\"" + name + "\": ") + text(value);
}

void Figures::add(const std::string& name, const std::vector<double>& values) {
  std::string list;
  for (const double value : values) list += (list.empty() ? "" : ", ") + text(value);
  _members += (_members.empty() ? "" : ", ") + ("\"" + name + "\": [") + list + "]";
}

void Figures::print() const {
  std::cout << "{" << _members << "}" << std::endl;
}

}  // namespace ZebBench
