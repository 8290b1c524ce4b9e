# The shared library and its static twin, both linked from qvlinkdb_objects.
qvlinkdb_target(qvlinkdb_objects)
qvlinkdb_null_views(qvlinkdb_objects)
# Unique symbols would keep the library in the process after it was unloaded.
target_compile_options(qvlinkdb_objects PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
if(NOT WIN32)
  # Calls within the library, and to what it keeps for each thread, go straight there.
  target_compile_options(qvlinkdb_objects PRIVATE -ftls-model=initial-exec -fno-semantic-interposition)
endif()
target_include_directories(qvlinkdb_objects
  PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/LinkDatabase/LinkDatabaseSource)
target_compile_definitions(qvlinkdb_objects PRIVATE QVLINKDB_BUILDING
  QVLINKDB_PLAIN_HEAP=$<BOOL:${QVLINKDB_PLAIN_HEAP}>)
if(QVLINKDB_HOOKS)
  target_compile_definitions(qvlinkdb_objects PUBLIC QVLINKDB_HOOKS)
endif()

find_package(Threads REQUIRED)
set(QVLINKDB_SYSTEM_LIBRARIES Threads::Threads ${CMAKE_DL_LIBS})
if(WIN32)
  list(APPEND QVLINKDB_SYSTEM_LIBRARIES ole32)
else()
  list(APPEND QVLINKDB_SYSTEM_LIBRARIES qvlinkdb_registry)
endif()

add_library(QVLinkDB SHARED $<TARGET_OBJECTS:qvlinkdb_objects>)
add_library(QVLinkDB::QVLinkDB ALIAS QVLinkDB)
if(WIN32)
  set_target_properties(QVLinkDB PROPERTIES PREFIX "")
  qvlinkdb_copy_runtime()
else()
  # The name carries no version: clients and the loader look for libQVLinkDB.so.
  set_target_properties(QVLinkDB PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  target_link_options(QVLinkDB PRIVATE -Wl,--no-undefined -Wl,-Bsymbolic-functions
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map
    $<$<BOOL:${QVLINKDB_SANITIZED}>:-Wl,-z,undefs>)
endif()
target_link_libraries(QVLinkDB PRIVATE ${QVLINKDB_SYSTEM_LIBRARIES})
target_include_directories(QVLinkDB PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/QVLinkDB>)

add_library(qvlinkdb_static STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:qvlinkdb_objects>)
target_compile_definitions(qvlinkdb_static PUBLIC QVLINKDB_STATIC
  $<$<BOOL:${QVLINKDB_HOOKS}>:QVLINKDB_HOOKS>)
target_link_libraries(qvlinkdb_static PUBLIC ${QVLINKDB_SYSTEM_LIBRARIES})
target_include_directories(qvlinkdb_static PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}
  ${PROJECT_SOURCE_DIR}/LinkDatabase/LinkDatabaseSource)
