// SPDX-License-Identifier: MIT
// Options of the data that make no sense: what the program says, to the letter.

#include <gtest/gtest.h>

#include "tests/apps/program_fixture.h"

namespace discoplan {
namespace {

class BadOptions : public ProgramFixture {};

struct BadOption {
  const char* options;
  int status;
  std::string message;
};

TEST_F(BadOptions, AreToldToTheLetter) {
  const std::string outliers =
      "--drop-outliers takes a factor and iqr or mad, as in 1.5iqr or 3.5mad, not ";
  const std::string residual =
      "--residual takes plane, radial or zernike:N with N from 0 to 20, not ";
  const BadOption rows[] = {
      {"--where ' '", 2, "--where: takes a text that isn't empty"},
      {"--columns ' '", 2, "--columns: takes a text that isn't empty"},
      {"--parameter ' '", 2, "--parameter: takes a text that isn't empty"},
      {"--by ' '", 2, "--by: takes a text that isn't empty"},
      {"--wafer ' '", 2, "--wafer: takes a text that isn't empty"},
      {"--unit px", 2,
       "--unit is that of the positions and takes mm, cm, um or in, not 'px'; --value-unit names "
       "that of the values"},
      {"--unit cm", 1,
       "a.csv:1: 'X (mm)' is in 'mm' and --unit says cm; leave out --unit or mend the header"},
      {"--pitch 0 1", 2, "--pitch: a die has no side of 0"},
      {"--pitch 10 10", 1,
       "a.csv:1: the positions are lengths with a unit and don't count dies; leave out --pitch"},
      {"--origin corner", 1,
       "a.csv: no standard wafer holds sites that are counted from its corner like these; give its "
       "--diameter, or leave out --origin corner"},
      {"--sites 5", 1, "a.csv: the file is a text; leave out --sites, it's for binary files"},
      {"--edge-exclusion 0", 2, "--edge-exclusion: takes a positive number, not '0'"},
      {"--edge-exclusion 100", 1,
       "a.csv: nothing is left of a wafer inside its --edge-exclusion; give less"},
      {"--test-diameter 301", 1,
       "a.csv: --test-diameter: 301 mm is more than the wafer's 200 mm; give less, or a larger "
       "--diameter"},
      {"--diameter 100", 1,
       "a.csv: a site is 100 mm from the centre, outside a wafer of 100 mm across; give a larger "
       "--diameter"},
      {"--drop-outliers 0iqr", 2, outliers + "'0iqr'"},
      {"--drop-outliers=-1iqr", 2, outliers + "'-1iqr'"},
      {"--drop-outliers 1.5", 2, outliers + "'1.5'"},
      {"--drop-outliers 1,5iqr", 2, outliers + "'1,5iqr'"},
      {"--residual zernike", 2, residual + "'zernike'"},
      {"--residual zernike:21", 2, residual + "'zernike:21'"},
      {"--residual zernike:2", 1,
       "a.csv: a: 5 sites for the 6 terms of the surface, so that nothing is left; give a lower "
       "order"},
      {"--rotate nan", 2, "--rotate: takes a number that a 32-bit float holds, not 'nan'"},
      {"--minus mean", 1, "a.csv: has one wafer, which is its own mean; leave out --minus mean"},
      {"--minus none.csv", 1, "none.csv: there is no such file; check the path"},
      {"--wafer 1", 1,
       "a.csv: the table is taken for one wafer; name the columns that tell its wafers apart with "
       "--by, or leave out --wafer"},
  };
  Write("a.csv", "X (mm),Y (mm),V\n-100,0,5\n100,0,6\n0,100,7\n0,-100,8\n0,0,9\n");
  for (const BadOption& row : rows) {
    SCOPED_TRACE(row.options);
    for (const std::string command :
         {"stats a.csv ", "plot a.csv -o map.png ", "lot a.csv -o map.png "}) {
      const Outcome outcome = Run(command + row.options);
      EXPECT_EQ(outcome.status, row.status) << command;
      EXPECT_EQ(outcome.output, "discoplan: " + row.message + "\n") << command;
      EXPECT_FALSE(Exists("map.png")) << command;
    }
  }
}

}  // namespace
}  // namespace discoplan
