// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace discoplan::app {

/// A bar on a terminal, that goes when the work is done; nothing where standard error is none.
class Progress {
 public:
  explicit Progress(std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Show(std::size_t done, const std::string& name) const;

 private:
  const std::size_t total_;
  const bool shown_;
};

}  // namespace discoplan::app
