# GoogleTest for a cross compiler, from Debian's sources; without them there is no such target.
set(googletest /usr/src/googletest/googletest)
if(EXISTS ${googletest} AND NOT TARGET discoplan-googletest)
  add_library(discoplan-googletest STATIC EXCLUDE_FROM_ALL ${googletest}/src/gtest-all.cc)
  target_include_directories(discoplan-googletest SYSTEM
    PUBLIC ${googletest}/include PRIVATE ${googletest})
endif()
