# qvlinkdb_zlib: zlib, the system's on Linux, and within the module or tool on Windows, which
# has none.
add_library(qvlinkdb_zlib INTERFACE)
if(WIN32)
  find_library(QVLINKDB_ZLIB NAMES libz.a REQUIRED)
  target_link_libraries(qvlinkdb_zlib INTERFACE ${QVLINKDB_ZLIB})
else()
  find_package(ZLIB REQUIRED)
  target_link_libraries(qvlinkdb_zlib INTERFACE ZLIB::ZLIB)
endif()
