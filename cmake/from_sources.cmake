# zlib, libpng, FreeType and libharu for a cross compiler, from the sources that this machine's own
# are built from: the same versions give the same bytes and letters.
set(sources ${PROJECT_SOURCE_DIR}/build/sources)
execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/fetch-sources ${sources}
  COMMAND_ERROR_IS_FATAL ANY)
enable_language(C)

# discoplan_c_library(TARGET NAME FILE...): of NAME's folder, kept to those that link it
function(discoplan_c_library target name)
  list(TRANSFORM ARGN PREPEND ${sources}/${name}/)
  list(TRANSFORM ARGN APPEND .c)
  add_library(${target} STATIC EXCLUDE_FROM_ALL ${ARGN})
  target_include_directories(${target} SYSTEM PUBLIC ${sources}/${name})
  target_compile_options(${target} PRIVATE -w)
  set_target_properties(${target} PROPERTIES C_VISIBILITY_PRESET hidden)
endfunction()

discoplan_c_library(discoplan-zlib zlib
  adler32 compress crc32 deflate infback inffast inflate inftrees trees uncompr zutil)

file(READ ${sources}/libpng/scripts/pnglibconf.h.prebuilt pnglibconf)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/sources/libpng/pnglibconf.h CONTENT "${pnglibconf}" @ONLY)
discoplan_c_library(discoplan-libpng libpng
  png pngerror pngget pngmem pngpread pngread pngrio pngrtran pngrutil pngset pngtrans pngwio
  pngwrite pngwtran pngwutil)
target_include_directories(discoplan-libpng SYSTEM PUBLIC ${CMAKE_BINARY_DIR}/sources/libpng)
target_link_libraries(discoplan-libpng PUBLIC discoplan-zlib)
add_library(PNG::PNG ALIAS discoplan-libpng)
add_library(ZLIB::ZLIB ALIAS discoplan-zlib)

if(DISCOPLAN_FIGURE_FILES)
  set(config ${CMAKE_BINARY_DIR}/sources/libharu)
  file(CONFIGURE OUTPUT ${config}/hpdf_config.h CONTENT "#define LIBHPDF_HAVE_NOPNGLIB 1\n" @ONLY)
  file(GLOB libharu RELATIVE ${sources}/libharu ${sources}/libharu/src/*.c)
  list(TRANSFORM libharu REPLACE "[.]c$" "")
  discoplan_c_library(discoplan-libharu libharu ${libharu})
  target_include_directories(discoplan-libharu SYSTEM PUBLIC ${sources}/libharu/include ${config})
  target_link_libraries(discoplan-libharu PUBLIC discoplan-zlib)
endif()

set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
set(ZLIB_LIBRARY discoplan-zlib)
set(ZLIB_INCLUDE_DIR ${sources}/zlib)
set(FT_REQUIRE_ZLIB ON)
foreach(other IN ITEMS BZIP2 PNG HARFBUZZ BROTLI)
  set(FT_DISABLE_${other} ON)
endforeach()
set(SKIP_INSTALL_ALL ON)
set(shared ${BUILD_SHARED_LIBS})
set(BUILD_SHARED_LIBS OFF)
add_subdirectory(${sources}/freetype ${CMAKE_BINARY_DIR}/sources/freetype EXCLUDE_FROM_ALL SYSTEM)
target_compile_options(freetype PRIVATE -w)
set(BUILD_SHARED_LIBS ${shared})
add_library(Freetype::Freetype ALIAS freetype)
