// SPDX-License-Identifier: MIT
// Runs the tests on a thread as programs with windows have them.

#include "tests/activex/client.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (FAILED(OleInitialize(nullptr))) return 2;
  const int failed = RUN_ALL_TESTS();
  CoFreeUnusedLibraries();
  OleUninitialize();
  return failed;
}
