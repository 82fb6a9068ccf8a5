# CPack gives a package with a shared library maintainer scripts that call ldconfig, and has no option not
# to. The trigger of the package does that once for all packages of an installation, so they are taken
# out. Run by CPack when the packages are made.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree "${package}.tree")
  execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
  if(EXISTS "${tree}/DEBIAN/postinst" OR EXISTS "${tree}/DEBIAN/postrm")
    file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
    execute_process(COMMAND dpkg-deb --root-owner-group --build "${tree}" "${package}"
      OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  endif()
  file(REMOVE_RECURSE "${tree}")
endforeach()
