# qvlinkdb_target(<target>): what every target of the project is compiled with.
function(qvlinkdb_target target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
  if(QVLINKDB_SANITIZED AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The checks that sanitizers put in make the compiler see this where nothing is.
    target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
  endif()
  if(WIN32)
    target_compile_definitions(${target} PRIVATE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0600)
  endif()
endfunction()

# Views may be null (a null CQVUObject* is a valid argument of many operations), so
# the compiler must not infer from a member call that its object exists.
function(qvlinkdb_null_views target)
  target_compile_options(${target} PRIVATE -fno-delete-null-pointer-checks)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -Wno-nonnull -Wno-nonnull-compare -Wno-address)
  else()
    target_compile_options(${target} PRIVATE -Wno-tautological-undefined-compare -Wno-undefined-bool-conversion)
  endif()
  target_compile_options(${target} PRIVATE $<$<BOOL:${QVLINKDB_SANITIZE_UNDEFINED}>:-fno-sanitize=null>)
endfunction()
