# The Debian packages, one for each component that is installed. scripts/package makes them of the
# preset `package`, which installs into /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME varnel-xml)
set(CPACK_PACKAGE_CONTACT "the Varnel XML Creation authors <varnel-xml@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development python tools host)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

# Each package has its copyright and its changelog.
set(doc "${PROJECT_BINARY_DIR}/debian")
file(READ "${PROJECT_SOURCE_DIR}/LICENSE" license)
file(READ "${PROJECT_SOURCE_DIR}/src/platform/schema/w3c/LICENSE" w3c_license)
foreach(text IN ITEMS license w3c_license)
  string(REGEX REPLACE "\n\n" "\n.\n" ${text} "${${text}}")
  string(REGEX REPLACE "\n" "\n " ${text} " ${${text}}")
  string(STRIP "${${text}}" ${text})
endforeach()
configure_file("${CMAKE_CURRENT_LIST_DIR}/debian-copyright.in" "${doc}/copyright" @ONLY)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE "${doc}/changelog.Debian" "varnel-xml (${PROJECT_VERSION}-1) unstable; urgency=medium\n\n"
  "  * Version ${PROJECT_VERSION}.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
execute_process(COMMAND gzip -9nf "${doc}/changelog.Debian" COMMAND_ERROR_IS_FATAL ANY)

# The package `name` of a component, with its section and the lines that say what it holds. The first
# line, the same for all, is the description of the project.
function(varnel_package component name section)
  string(TOUPPER "${component}" upper)
  list(JOIN ARGN "\n" description)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME "${name}" PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION "${section}" PARENT_SCOPE)
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${description}" PARENT_SCOPE)
  install(FILES "${doc}/copyright" "${doc}/changelog.Debian.gz"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" COMPONENT ${component})
endfunction()

set(library libvarnel-xml-creation${PROJECT_VERSION_MAJOR})
set(same "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

varnel_package(library ${library} libs
  "This package has the shared library."
  "Turns a submitted form into the parked form, so that it can be stored and"
  "opened again, and into an electronic message, which is checked against its"
  "XML Schema. Errors come back with the questions that they belong to.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
file(WRITE "${doc}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${doc}/triggers")
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/TakeOutLdconfigCalls.cmake")

varnel_package(development libvarnel-xml-creation-dev libdevel
  "The headers of the library for C++ and C, the static library, and what CMake"
  "and pkg-config need to find them.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${library} ${same}, libxml2-dev, libre2-dev, libutf8proc-dev")

varnel_package(python python3-varnel-xml python
  "The module varnel_xml runs submissions of a form and gives the parked form,"
  "the message, the verdict of the schema and every violation.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3 (>= 3.9), ${library} (>= ${PROJECT_VERSION})")

varnel_package(tools varnel-xml-tools text
  "The program varnel-xml plays the web page that calls the library: it runs"
  "submissions of a form and writes the parked form, the message and the result.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)

# What makes pages is loaded when it is used, and so is what the host stores its forms with.
set(pages libxslt1.1)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${pages}")
varnel_package(host varnel-xml-host web
  "The program varnel-xml-host lets people fill in forms in a browser, keeps them"
  "in SQLite or PostgreSQL, and delivers the messages that are made of them.")
set(CPACK_DEBIAN_HOST_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_HOST_PACKAGE_DEPENDS "libsoci-sqlite3-4.0, libsoci-postgresql4.0, ${pages}")

include(CPack)
