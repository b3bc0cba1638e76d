# Where ccache is installed, what was compiled once isn't compiled again, whatever folder the checkout
# is in. Precompiled headers would hide from it what a unit reads.
find_program(DISCOPLAN_CCACHE ccache)
if(DISCOPLAN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${DISCOPLAN_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()
