// SPDX-License-Identifier: MIT
// The inputs that fuzzing kept, and damaged copies of them.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "fuzz/one_input.h"
#include "tests/places.h"

namespace discoplan::fuzz {
namespace {

class Corpus : public testing::TestWithParam<Reader> {};

TEST_P(Corpus, EndsWithSitesOrAnError) {
  const Reader& reader = GetParam();
  std::mt19937 random(7);
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(
           TestData("../fuzz/corpus/" + std::string(reader.name)))) {
    ++files;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    for (int round = 0; round < 30; ++round) {
      std::string input =
          whole.substr(0, round == 0 ? whole.size() : random() % (whole.size() + 1));
      for (int change = 0; change < round % 6 && !input.empty(); ++change) {
        input[random() % input.size()] =
            change % 2 == 0 ? whole[random() % whole.size()] : static_cast<char>(random() % 256);
      }
      ReadOne(reader, input);
    }
  }
  EXPECT_GT(files, 0U);
}

INSTANTIATE_TEST_SUITE_P(Readers, Corpus, testing::ValuesIn(kReaders),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace discoplan::fuzz
