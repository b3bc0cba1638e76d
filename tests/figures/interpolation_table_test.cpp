// SPDX-License-Identifier: MIT
// Computes the table of leave-one-out errors in docs/figures.md anew.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "data/read.h"
#include "discoplan/figures/value_field.h"
#include "tests/places.h"

namespace discoplan::figures {
namespace {

constexpr double kRadius = 150;

struct Sites {
  std::vector<float> x, y, value;
};

/// Errors in parts of the range of the values.
struct Errors {
  double idw4 = 0;
  double smooth = 0;
};

Errors ErrorsOf(const Sites& sites, double radius) {
  const SiteView view{sites.x, sites.y, sites.value};
  const auto [low, high] = std::minmax_element(sites.value.begin(), sites.value.end());
  const double range = static_cast<double>(*high) - *low;
  return {MakeField(view, radius, Interpolation::Idw4)->LeaveOneOutError() / range,
          MakeField(view, radius, Interpolation::Smooth)->LeaveOneOutError() / range};
}

Errors MeanOf(const std::vector<Errors>& all) {
  Errors mean;
  for (const Errors& each : all) {
    mean.idw4 += each.idw4 / static_cast<double>(all.size());
    mean.smooth += each.smooth / static_cast<double>(all.size());
  }
  return mean;
}

/// Of each so-many-th wafer; `values` are those of the file to read.
Errors ErrorsOfLot(const char* file, std::vector<std::string> values, std::size_t step) {
  data::ReadRequest request;
  request.path = Example(file);
  request.parameters = std::move(values);
  const data::Lot lot = data::Read(request);
  std::vector<Errors> errors;
  for (std::size_t i = 0; i < lot.wafers.size(); i += step) {
    const data::Wafer& wafer = lot.wafers[i];
    errors.push_back(ErrorsOf({wafer.x, wafer.y, wafer.value}, wafer.diameter / 2.0));
  }
  return MeanOf(errors);
}

/// The same with every standard library, unlike its distributions.
double Gauss(std::mt19937& random) {
  double sum = -6;
  for (int i = 0; i < 12; ++i) sum += static_cast<double>(random()) / 4294967296.0;
  return sum;
}

using Shape = double (*)(double x, double y);  // in parts of the radius

double Bowl(double x, double y) { return x * x + y * y; }
double Ring(double x, double y) {
  const double off = (std::hypot(x, y) - 0.7) / 0.1;
  return std::exp(-off * off);
}
double Edge(double x, double y) { return 1 / (1 + std::exp(-(x + 0.3 * y - 0.2) / 0.03)); }
double Saddle(double x, double y) { return 0.5 + x * y; }
double HotSpot(double x, double y) {
  return std::exp(-((x - 0.3) * (x - 0.3) + (y - 0.2) * (y - 0.2)) / 0.03);
}

/// Three wafers with their sites along spirals that start each at another angle.
Errors ErrorsOfShape(Shape shape, int count, double noise) {
  std::mt19937 random(11);
  std::vector<Errors> errors;
  for (int wafer = 0; wafer < 3; ++wafer) {
    Sites sites;
    for (int i = 0; i < count; ++i) {
      const double r = 0.97 * std::sqrt((i + 0.5) / count);
      const double angle = 2.399963 * i + wafer;
      const double x = r * std::cos(angle);
      const double y = r * std::sin(angle);
      sites.x.push_back(static_cast<float>(kRadius * x));
      sites.y.push_back(static_cast<float>(kRadius * y));
      sites.value.push_back(static_cast<float>(shape(x, y) + noise * Gauss(random)));
    }
    errors.push_back(ErrorsOf(sites, kRadius));
  }
  return MeanOf(errors);
}

struct Row {
  const char* name;
  std::function<Errors()> compute;
};

TEST(InterpolationTable, IsAsTheDocumentHasIt) {
  const std::vector<Row> rows = {
      {"Native oxide, 49 sites", [] { return ErrorsOfLot("native_oxide_lot.csv", {}, 3); }},
      {"Thick film, 55 sites", [] { return ErrorsOfLot("thick_film_lot.csv", {"all"}, 2); }},
      {"Bowl, 49 sites", [] { return ErrorsOfShape(Bowl, 49, 0); }},
      {"Bowl with noise of 0.2, 49 sites", [] { return ErrorsOfShape(Bowl, 49, 0.2); }},
      {"Ring, 49 sites", [] { return ErrorsOfShape(Ring, 49, 0); }},
      {"Steep edge, 250 sites", [] { return ErrorsOfShape(Edge, 250, 0); }},
      {"Saddle with noise of 0.2, 250 sites", [] { return ErrorsOfShape(Saddle, 250, 0.2); }},
      {"Hot spot with noise of 0.02, 1000 sites",
       [] { return ErrorsOfShape(HotSpot, 1000, 0.02); }},
      {"Ring with noise of 0.2, 5000 sites", [] { return ErrorsOfShape(Ring, 5000, 0.2); }},
      {"Ring, 20000 sites", [] { return ErrorsOfShape(Ring, 20000, 0); }},
  };
  std::ifstream file(Example("../docs/figures.md"));
  const std::string document{std::istreambuf_iterator<char>(file), {}};
  for (const auto& [name, compute] : rows) {
    const Errors errors = compute();
    char line[200];
    std::snprintf(line, sizeof line, "| %s | %.3f | %.3f |", name, errors.idw4, errors.smooth);
    const std::size_t at = document.find(std::string("| ") + name + " |");
    ASSERT_NE(at, std::string::npos) << "missing: " << line;
    double idw4 = 0;
    double smooth = 0;
    ASSERT_EQ(std::sscanf(document.c_str() + at + std::string(name).size() + 4, "%lf | %lf", &idw4,
                          &smooth),
              2);
    // One in the last digit, for other compilers' sums.
    EXPECT_NEAR(idw4, errors.idw4, 0.0011) << line;
    EXPECT_NEAR(smooth, errors.smooth, 0.0011) << line;
    EXPECT_LT(errors.smooth, errors.idw4) << line;
  }
}

}  // namespace
}  // namespace discoplan::figures
