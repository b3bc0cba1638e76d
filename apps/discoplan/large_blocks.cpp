// SPDX-License-Identifier: MIT
// Large blocks of the program's memory start on huge pages where the system offers them: the first
// touch of each small page of a picture costs as much as painting a hundred cells.

#ifdef __linux__

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kHugePage = 2 << 20;

void* Allocate(std::size_t size) {
  if (size < kHugePage) return std::malloc(size);
  void* block = std::aligned_alloc(kHugePage, (size + kHugePage - 1) / kHugePage * kHugePage);
  // The last one may be partly used: it stays in small pages.
  if (block != nullptr) madvise(block, size / kHugePage * kHugePage, MADV_HUGEPAGE);
  return block;
}

}  // namespace

void* operator new(std::size_t size) {
  for (;;) {
    if (void* block = Allocate(size > 0 ? size : 1)) return block;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

#endif
