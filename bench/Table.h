#pragma once

#include <functional>
#include <string>
#include <vector>

using Figures = std::vector<double>;

/// What Dravik took and what it is compared with took, run by run in turn.
struct Pairs {
  Figures ours;
  Figures theirs;
};

/// Takes both sides in turn, so many times after one turn that does not count.
Pairs InTurn(int times, const std::function<double()>& ours, const std::function<double()>& theirs);

struct Spread {
  double minimum, median, maximum;
};
Spread SpreadOf(Figures figures);

/// Prints the performance table, line by line as the figures come.
class Table {
 public:
  Table();

  /// A ratio, taken for each pair of runs. Its median must not be above the bar.
  void Ratio(const std::string& name, double bar, const Pairs& pairs);
  /// Figures with a unit. The largest must not be above the bar.
  void Worst(const std::string& name, double bar, const std::string& unit, const Figures& figures);
  /// A line that says why there is no figure.
  void Without(const std::string& name, const std::string& why);

 private:
  void Line(const std::string& name, double bar, const std::string& unit, const Spread& spread, bool met);
};
