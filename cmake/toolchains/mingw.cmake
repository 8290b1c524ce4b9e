# What both Windows toolchains share: Debian's mingw-w64 with POSIX threads.
set(CMAKE_CXX_COMPILER ${QVLINKDB_MINGW}-g++-posix)
set(CMAKE_C_COMPILER ${QVLINKDB_MINGW}-gcc-posix)
set(CMAKE_RC_COMPILER ${QVLINKDB_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${QVLINKDB_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../scripts/wine)
endif()

# The compiler's runtime is shared, so that exceptions cross module borders; it
# has to lie beside the programs.
function(qvlinkdb_copy_runtime)
  file(MAKE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  foreach(name libstdc++-6.dll libwinpthread-1.dll libgcc_s_seh-1.dll libgcc_s_dw2-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
      OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(IS_ABSOLUTE "${file}")
      file(COPY_FILE "${file}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}" ONLY_IF_DIFFERENT)
      set_property(GLOBAL APPEND PROPERTY QVLINKDB_RUNTIME_FILES "${file}")
    endif()
  endforeach()
endfunction()
