#pragma once

#include <string>
#include <vector>

namespace ZebBench {

/// The figures of one run, printed as one JSON object on a line when they are complete.
class Figures {
 public:
  void add(const std::string& name, double value);
  void add(const std::string& name, const std::vector<double>& values);
  void print() const;

 private:
  std::string _members;
};

}  // namespace ZebBench
