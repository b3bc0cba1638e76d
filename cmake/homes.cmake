# What is built, one option for each home of the library. The library alone needs a compiler and
# nothing else; what another project adds as a folder of its own is that, unless it asks for more.
# What leans on something that is off is off, too.
include(CMakeDependentOption)

set(on_its_own ${PROJECT_IS_TOP_LEVEL})
if(WIN32 OR EMSCRIPTEN)
  set(has_fontconfig OFF)
else()
  set(has_fontconfig ON)
endif()
if(CMAKE_CROSSCOMPILING)
  set(runs_here OFF)
else()
  set(runs_here ${on_its_own})
endif()

option(BUILD_SHARED_LIBS "Build shared libraries" ON)
option(DISCOPLAN_WERROR "Treat warnings as errors" OFF)

option(DISCOPLAN_DATA "Readers of measured files" ${on_its_own})
option(DISCOPLAN_HEADLESS "Host without a display: FreeType's letters, PNG files" ${on_its_own})
option(DISCOPLAN_FONTCONFIG "Let it find fonts by fontconfig" ${has_fontconfig})
cmake_dependent_option(DISCOPLAN_FIGURE_FILES "Let it save figures by AGG and libharu"
  ON DISCOPLAN_HEADLESS OFF)
cmake_dependent_option(DISCOPLAN_AUTOMATION "Hosts of scripts and tests: recording, automation"
  ${on_its_own} DISCOPLAN_HEADLESS OFF)
cmake_dependent_option(DISCOPLAN_C "C interface, for other languages" ${on_its_own}
  "DISCOPLAN_DATA;DISCOPLAN_FIGURE_FILES;NOT EMSCRIPTEN" OFF)
cmake_dependent_option(DISCOPLAN_PYTHON "Python package" ${runs_here} DISCOPLAN_C OFF)
cmake_dependent_option(DISCOPLAN_QT "Qt host" ${runs_here} DISCOPLAN_HEADLESS OFF)
cmake_dependent_option(DISCOPLAN_PROGRAMS "Programs; those that need Qt where its host is built"
  ${on_its_own} "DISCOPLAN_DATA;DISCOPLAN_AUTOMATION" OFF)
cmake_dependent_option(DISCOPLAN_WHOLE_PROGRAM
  "Link the command line program to start without the shared libraries" ON
  "DISCOPLAN_PROGRAMS;BUILD_SHARED_LIBS" OFF)
cmake_dependent_option(DISCOPLAN_TESTS "Tests" ${runs_here} DISCOPLAN_PROGRAMS OFF)
cmake_dependent_option(DISCOPLAN_BENCH "Benchmarks" OFF DISCOPLAN_HEADLESS OFF)
option(DISCOPLAN_FUZZ "Fuzzers of the readers, by clang" OFF)
set(DISCOPLAN_WIDL ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-widl)
find_program(has_widl ${DISCOPLAN_WIDL})
cmake_dependent_option(DISCOPLAN_ACTIVEX "ActiveX server; its type library takes widl" ON
  "on_its_own;WIN32;has_widl" OFF)
option(DISCOPLAN_INSTALL "What is installed and packed" ${on_its_own})
