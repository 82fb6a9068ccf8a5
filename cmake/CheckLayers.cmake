# Which folder may include what: run as `cmake [-DTREE=<dir>] -P cmake/CheckLayers.cmake`.
cmake_minimum_required(VERSION 3.25)
if(NOT DEFINED TREE)
  get_filename_component(TREE "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
endif()

# The arrows: what quoted includes of a folder may begin with. The first folder that fits counts.
set(layers src/result src/platform/text src/platform/fault src/platform/xml src/platform/xpath
  src/platform/dom src/platform/schema/value src/platform/schema/component src/platform/schema
  src/platform/host src/platform/json src/config src/deployment src/answers src/check src/park src/message
  src/validation src/interface src/c)
set(src/result          "^result/")
set(src/platform/text   "^(result|platform/text)/")
set(src/platform/fault  "^(result|platform/(text|fault))/")
set(src/platform/xml    "^(result|platform/(text|xml))/")
set(src/platform/xpath  "^(result|platform/(text|xml|xpath))/")
set(src/platform/dom    "^(result|platform/(text|fault|xml|xpath|dom))/")
set(src/platform/schema/value     "^(result|platform/(text|xml|schema/value))/")
set(src/platform/schema/component "^(result|platform/(text|xml|schema/(value|component)))/")
set(src/platform/schema "^(result|platform/(text|fault|xml|schema))/")
set(src/platform/host   "^(result|platform/(text|xml|dom|host))/")
set(src/platform/json   "^(result|platform/(text|json))/")
set(src/config          "^(result|platform|config)/")
set(src/deployment      "^(result|platform|config|deployment)/")
set(src/answers         "^(result|platform|config|answers)/")
set(src/check           "^(result|platform|config|check)/")
set(src/park            "^(result|platform|config|park)/")
set(src/message         "^(result|platform|config|deployment|message)/")
set(src/validation      "^(result|platform|config|validation)/")
set(src/interface
  "^(result|platform|config|answers|check|park|message|validation|interface)/")
set(src/c               "^((result|platform|interface)/|varnel_xml\\.h$)")

# The guests: who may include a third-party header. apps/ also keeps to the installed headers,
# by the name that hosts give them.
set(guests "^(re2/|utf8proc)"       "^libxml/" "^libxslt/" "^(boost/|soci/|openssl/)"
  "^(nlohmann/|CLI/)"   "^(gtest/|gmock/)")
set(hosts  "^(src|tests)/platform/" "^(src|tests)/platform/|^apps/Stylesheet|^(apps|tests/apps)/HtmlText"
  "^apps/Stylesheet" "^(apps|tests/apps)/host/"
  "^(apps|tests/apps)/|^(src|tests)/platform/json/" "^tests/")
file(READ "${TREE}/src/CMakeLists.txt" listing)
string(REGEX MATCH "set\\(installed_headers[^)]*" listing "${listing}")
string(REGEX MATCHALL "[A-Za-z_/]+\\.h" installed "${listing}")

file(GLOB_RECURSE files RELATIVE "${TREE}" "${TREE}/src/*.h" "${TREE}/src/*.cpp"
  "${TREE}/apps/*.h" "${TREE}/apps/*.cpp" "${TREE}/tests/*.h" "${TREE}/tests/*.cpp")
foreach(file IN LISTS files)
  set(arrow "")
  foreach(layer IN LISTS layers)
    if(arrow STREQUAL "" AND file MATCHES "^${layer}/")
      set(arrow "${${layer}}")
    endif()
  endforeach()
  file(STRINGS "${TREE}/${file}" lines REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[^<\"]*[<\"]([^>\"]*).*$" "\\1" name "${line}")
    set(wrong FALSE)
    string(REGEX REPLACE "^src/" "" header "${file}")
    if(header IN_LIST installed AND line MATCHES "\"")
      # Hosts find these headers below a folder of their own, so only relative paths lead on.
      cmake_path(GET file PARENT_PATH folder)
      cmake_path(ABSOLUTE_PATH name BASE_DIRECTORY "${TREE}/${folder}" NORMALIZE)
      cmake_path(RELATIVE_PATH name BASE_DIRECTORY "${TREE}/src")
      if(NOT name IN_LIST installed)
        set(wrong TRUE)
      endif()
    endif()
    if(arrow AND line MATCHES "\"" AND NOT name MATCHES "${arrow}")
      set(wrong TRUE)
    elseif(file MATCHES "^apps/")
      string(REGEX REPLACE "^varnel_xml_creation/" "" public "${name}")
      if(EXISTS "${TREE}/src/${name}" OR
          (NOT public STREQUAL name AND NOT public IN_LIST installed))
        set(wrong TRUE)
      endif()
    endif()
    foreach(guest host IN ZIP_LISTS guests hosts)
      if(name MATCHES "${guest}" AND (NOT file MATCHES "${host}" OR header IN_LIST installed))
        set(wrong TRUE)
      endif()
    endforeach()
    if(wrong)
      string(APPEND broken "\n  ${file} includes ${name}")
    endif()
  endforeach()
endforeach()
if(NOT files OR NOT installed OR broken)
  message(FATAL_ERROR "Includes that the plan of the house does not allow:${broken}")
endif()
