// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>

#include "tests/temporary_folder.h"

namespace discoplan {

/// The C library with numbers of its own, a decimal point of two bytes among them, for as long as
/// it lives. The locale is made on the spot, so that it doesn't matter which ones are installed.
class ForeignNumbers {
 public:
  ForeignNumbers() {
    folder_.Write("numbers",
                  "LC_NUMERIC\ndecimal_point \"<U066B>\"\nthousands_sep \"<U066C>\"\n"
                  "grouping 3;3\nEND LC_NUMERIC\n");
    const std::string folder = folder_.path().string();
    const std::string command =
        "cd '" + folder + "' && localedef -c -i numbers -f UTF-8 ./foreign.UTF-8 > log 2>&1";
    // Its status tells of warnings too: only this one category is given.
    if (std::system(command.c_str()) == -1) return;
    setenv("LOCPATH", folder.c_str(), 1);
    is_set_ = std::setlocale(LC_NUMERIC, "foreign.UTF-8") != nullptr;
  }
  ~ForeignNumbers() {
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
  }
  ForeignNumbers(const ForeignNumbers&) = delete;
  ForeignNumbers& operator=(const ForeignNumbers&) = delete;

  /// False where the C library lacks `localedef` or what it works from.
  bool IsSet() const { return is_set_; }

 private:
  TemporaryFolder folder_;
  bool is_set_ = false;
};

}  // namespace discoplan
