# What `cmake --install` puts where, and the CMake package QVLinkDB.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QVLinkDB)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/QVLinkDB)

install(TARGETS QVLinkDB EXPORT QVLinkDBTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
# Modules are looked for beside the library.
if(WIN32)
  install(TARGETS ZKCommon ziplib LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR})
else()
  install(TARGETS ZKCommon ziplib LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
install(EXPORT QVLinkDBTargets NAMESPACE QVLinkDB:: DESTINATION ${package_dir})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${header_dir}
  FILES_MATCHING PATTERN "*.h")

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/QVLinkDBConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QVLinkDBConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QVLinkDBConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QVLinkDBConfig.cmake
  ${PROJECT_BINARY_DIR}/QVLinkDBConfigVersion.cmake DESTINATION ${package_dir})

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md
  ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${CMAKE_INSTALL_DOCDIR}
  FILES_MATCHING PATTERN "*.md" PATTERN "*.json")
if(WIN32)
  get_property(runtime GLOBAL PROPERTY QVLINKDB_RUNTIME_FILES)
  install(FILES ${runtime} DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# Unlike the library, the tool is a client: it asks for its library beside itself in
# the build tree and in the neighbouring folder once installed.
if(TARGET qvlink)
  set_target_properties(qvlink PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS qvlink RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

  set(tool ${PROJECT_SOURCE_DIR}/tools/qvlink)
  set(shells ${CMAKE_INSTALL_DATADIR})
  install(FILES ${tool}/man/qvlink.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${tool}/completions/qvlink.bash RENAME qvlink
    DESTINATION ${shells}/bash-completion/completions)
  install(FILES ${tool}/completions/_qvlink DESTINATION ${shells}/zsh/site-functions)
  install(FILES ${tool}/completions/qvlink.fish DESTINATION ${shells}/fish/vendor_completions.d)
endif()
