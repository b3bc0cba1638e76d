// SPDX-License-Identifier: MIT
#include "hosts/headless/whole_file.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <fstream>
#include <iterator>

#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::uint8_t, 3> kBytes = {'n', 'e', 'w'};

class WholeFile : public testing::Test {
 protected:
  std::string Read(const fs::path& path) const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const TemporaryFolder temporary_;
  const fs::path folder_ = temporary_.path();
};

TEST_F(WholeFile, IsMadeWhereLinksLeadThatEndInNothingYet) {
  fs::create_directory(folder_ / "there");
  fs::create_symlink("second", folder_ / "first");
  fs::create_symlink("there/file", folder_ / "second");
  WriteWholeFile(folder_ / "first", kBytes);
  EXPECT_TRUE(fs::is_symlink(folder_ / "first"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "second"));
  EXPECT_EQ(Read(folder_ / "there" / "file"), "new");

  fs::create_symlink(folder_ / "whole", folder_ / "absolute");
  WriteWholeFile(folder_ / "absolute", kBytes);
  EXPECT_TRUE(fs::is_symlink(folder_ / "absolute"));
  EXPECT_EQ(Read(folder_ / "whole"), "new");
}

TEST_F(WholeFile, RefusesLinksInACircle) {
  fs::create_symlink("b", folder_ / "a");
  fs::create_symlink("a", folder_ / "b");
  EXPECT_THROW(WriteWholeFile(folder_ / "a", kBytes), FileError);
  EXPECT_TRUE(fs::is_symlink(folder_ / "a"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 2);
}

std::string PartName(int number) { return ".discoplan-" + std::to_string(number) + ".part"; }

TEST_F(WholeFile, TakesAwayWhatKilledProgramsLeft) {
  const auto long_ago = fs::file_time_type::clock::now() - std::chrono::hours(2);
  for (int i = 0; i < 1000; ++i) {
    temporary_.Write(PartName(i), "part");
    if (i != 3) fs::last_write_time(folder_ / PartName(i), long_ago);
  }
  // One that was written to lately may belong to somebody.
  WriteWholeFile(folder_ / "file", kBytes);
  EXPECT_EQ(Read(folder_ / "file"), "new");
  EXPECT_EQ(Read(folder_ / PartName(3)), "part");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 2);
}

TEST_F(WholeFile, SaysWhatToDoAboutAFolderFullOfParts) {
  for (int i = 0; i < 1000; ++i) temporary_.Write(PartName(i), "part");
  try {
    WriteWholeFile(folder_ / "file", kBytes);
    FAIL() << "no error";
  } catch (const FileError& error) {
    EXPECT_NE(std::string(error.what()).find("remove them"), std::string::npos) << error.what();
  }
  EXPECT_FALSE(fs::exists(folder_ / "file"));
}

}  // namespace
}  // namespace discoplan
