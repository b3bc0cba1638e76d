# WebAssembly by emscripten; a program is a script for Node, which sees the machine's files.
set(flags -fexceptions)
set(CMAKE_C_FLAGS_INIT ${flags})
set(CMAKE_CXX_FLAGS_INIT ${flags})
string(JOIN " " CMAKE_EXE_LINKER_FLAGS_INIT ${flags} -sENVIRONMENT=node -sNODERAWFS -sEXIT_RUNTIME
  -sWASM_ASYNC_COMPILATION=0 -sALLOW_MEMORY_GROWTH -sMAXIMUM_MEMORY=4GB -sTOTAL_STACK=8MB)
foreach(folder IN ITEMS /usr/share/emscripten $ENV{EMSDK}/upstream/emscripten)
  if(EXISTS ${folder}/cmake/Modules/Platform/Emscripten.cmake)
    include(${folder}/cmake/Modules/Platform/Emscripten.cmake)
    return()
  endif()
endforeach()
message(FATAL_ERROR "emscripten is missing; install the package emscripten")
