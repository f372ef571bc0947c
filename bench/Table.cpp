#include "bench/Table.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kNameWidth = 58;

}  // namespace

Pairs InTurn(int times, const std::function<double()>& ours, const std::function<double()>& theirs) {
  Pairs pairs;
  ours();
  theirs();
  for (int i = 0; i < times; ++i) {
    pairs.ours.push_back(ours());
    pairs.theirs.push_back(theirs());
  }
  return pairs;
}

Spread SpreadOf(Figures figures) {
  std::sort(figures.begin(), figures.end());
  const std::size_t half = figures.size() / 2;
  const double median = figures.size() % 2 ? figures[half] : (figures[half - 1] + figures[half]) / 2;
  return {figures.front(), median, figures.back()};
}

Table::Table() {
  std::printf("%-*s %9s %9s %9s %9s\n", kNameWidth, "", "minimum", "median", "maximum", "bar");
}

void Table::Ratio(const std::string& name, double bar, const Pairs& pairs) {
  Figures ratios;
  for (std::size_t i = 0; i < pairs.ours.size(); ++i) ratios.push_back(pairs.ours[i] / pairs.theirs[i]);
  const Spread spread = SpreadOf(ratios);
  Line(name, bar, "x", spread, spread.median <= bar);
}

void Table::Worst(const std::string& name, double bar, const std::string& unit, const Figures& figures) {
  const Spread spread = SpreadOf(figures);
  Line(name, bar, unit, spread, spread.maximum <= bar);
}

void Table::Without(const std::string& name, const std::string& why) {
  std::printf("%-*s %s\n", kNameWidth, name.c_str(), why.c_str());
  std::fflush(stdout);
}

void Table::Line(const std::string& name, double bar, const std::string& unit, const Spread& spread,
                 bool met) {
  const auto figure = [&](double value) {
    std::printf(" %*.*f%s", 9 - static_cast<int>(unit.size()), 2, value, unit.c_str());
  };
  std::printf("%-*s", kNameWidth, name.c_str());
  for (const double value : {spread.minimum, spread.median, spread.maximum, bar}) figure(value);
  std::printf("%s\n", met ? "" : "  MISSED");
  std::fflush(stdout);
}
