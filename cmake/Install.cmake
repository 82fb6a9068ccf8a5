# What is installed, in the components of which the packages are made (cmake/Packages.cmake):
# library, development, python, tools, host.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VarnelXmlCreation")
set(include_dir "${CMAKE_INSTALL_INCLUDEDIR}/varnel-xml-creation-${PROJECT_VERSION_MAJOR}")

install(TARGETS XmlCreationShared EXPORT VarnelXmlCreationTargets
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  INCLUDES DESTINATION "${include_dir}")
install(TARGETS XmlCreation EXPORT VarnelXmlCreationStaticTargets
  ARCHIVE COMPONENT development
  FILE_SET HEADERS DESTINATION "${include_dir}" COMPONENT development
  FILE_SET c_headers DESTINATION "${include_dir}" COMPONENT development)
foreach(export IN ITEMS VarnelXmlCreationTargets VarnelXmlCreationStaticTargets)
  install(EXPORT ${export} NAMESPACE Varnel:: DESTINATION "${package_dir}" COMPONENT development)
endforeach()

configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/VarnelXmlCreationConfig.cmake.in"
  "${CMAKE_CURRENT_BINARY_DIR}/VarnelXmlCreationConfig.cmake"
  INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(
  "${CMAKE_CURRENT_BINARY_DIR}/VarnelXmlCreationConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${CMAKE_CURRENT_BINARY_DIR}/VarnelXmlCreationConfig.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/VarnelXmlCreationConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT development)

# pkg-config finds the prefix by the place of the file, so that the package can be moved.
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH prefix_from_pkgconfig "/${pkgconfig_dir}" "/")
configure_file("${CMAKE_CURRENT_LIST_DIR}/varnel-xml-creation.pc.in"
  "${CMAKE_CURRENT_BINARY_DIR}/varnel-xml-creation.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/varnel-xml-creation.pc"
  DESTINATION "${pkgconfig_dir}" COMPONENT development)

# The Python module loads the shared library by its soname.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/python/varnel_xml"
  DESTINATION "lib/python3/dist-packages" COMPONENT python
  FILES_MATCHING PATTERN "*.py" PATTERN "py.typed")

# The library holds schemas of the W3C, whose notice goes with every copy. A package tells it among
# its copyrights.
if(NOT VARNEL_PACKAGES)
  install(FILES "${CMAKE_CURRENT_LIST_DIR}/../src/platform/schema/w3c/LICENSE"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/varnel-xml-creation" RENAME LICENSE.W3C
    COMPONENT library)
endif()

# The programs have the static library inside, so they run wherever they are copied to. Their manual
# pages tell the options that --help tells.
function(varnel_install_program program component section)
  install(TARGETS ${program} RUNTIME COMPONENT ${component})

  set(page "${program}.${section}")
  set(source "${PROJECT_SOURCE_DIR}/docs/man/${page}.in")
  set(maker "${PROJECT_SOURCE_DIR}/cmake/ManPage.cmake")
  add_custom_command(OUTPUT "${page}.gz"
    COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:${program}>" "-DPAGE=${source}"
      "-DOUTPUT=${CMAKE_CURRENT_BINARY_DIR}/${page}" -DVERSION=${PROJECT_VERSION} -P "${maker}"
    COMMAND gzip -9nf "${page}"
    DEPENDS ${program} "${source}" "${maker}"
    VERBATIM)
  add_custom_target(${program}-page ALL DEPENDS "${page}.gz")
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${page}.gz"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man${section}" COMPONENT ${component})

  install(FILES "${PROJECT_SOURCE_DIR}/completions/varnel-xml.bash"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME ${program}
    COMPONENT ${component})
endfunction()

if(VARNEL_DEVELOPER_MODE)
  varnel_install_program(varnel-xml tools 1)
  varnel_install_program(varnel-xml-host host 8)
endif()

# All that is installed, and nothing else.
add_custom_target(varnel-installed DEPENDS XmlCreationShared)
if(VARNEL_DEVELOPER_MODE)
  add_dependencies(varnel-installed varnel-xml-page varnel-xml-host-page)
endif()
