// SPDX-License-Identifier: MIT
#include "apps/discoplan/progress.h"

#include <cstdio>
#include <iostream>

#include "data/plain_text.h"
#include "hosts/port/port.h"

namespace discoplan::app {

Progress::Progress(std::size_t total) : total_(total), shown_(port::IsTerminal(stderr)) {}

Progress::~Progress() {
  if (shown_) std::cerr << "\r\033[K" << std::flush;
}

void Progress::Show(std::size_t done, const std::string& name) const {
  if (!shown_) return;
  constexpr std::size_t kWidth = 30;
  const std::size_t filled = done * kWidth / total_;
  std::cerr << "\r\033[K[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
            << done << '/' << total_ << ' ' << data::Printable(name) << std::flush;
}

}  // namespace discoplan::app
