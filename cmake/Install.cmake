include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VarnelXmlCreation")

install(TARGETS XmlCreation
  EXPORT VarnelXmlCreationTargets
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/VarnelXmlCreation")
install(EXPORT VarnelXmlCreationTargets NAMESPACE Varnel:: DESTINATION "${package_dir}")

# A shared library carries its dependencies; whoever links the static one has to find them.
get_target_property(library_type XmlCreation TYPE)
if(library_type STREQUAL "STATIC_LIBRARY")
  set(VARNEL_FINDS_DEPENDENCIES TRUE)
else()
  set(VARNEL_FINDS_DEPENDENCIES FALSE)
endif()
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
  DESTINATION "${package_dir}")

# The library holds schemas of the W3C, whose notice goes with every copy.
install(FILES "${CMAKE_CURRENT_LIST_DIR}/../src/platform/schema/w3c/LICENSE"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/VarnelXmlCreation" RENAME LICENSE.W3C)

file(RELATIVE_PATH library_dir "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
foreach(program IN ITEMS varnel-xml varnel-xml-host)
  if(TARGET ${program})
    set_target_properties(${program} PROPERTIES INSTALL_RPATH "$ORIGIN/${library_dir}")
    install(TARGETS ${program})
  endif()
endforeach()
