# The manual page that PROGRAM's help makes, below TREE, has each group of options under its heading.
# WORK is a scratch folder.
cmake_minimum_required(VERSION 3.25)

set(page "${WORK}/varnel-xml.1")
execute_process(COMMAND "${CMAKE_COMMAND}" -DPROGRAM=${PROGRAM} -DPAGE=${TREE}/docs/man/varnel-xml.1.in
    -DOUTPUT=${page} -DVERSION=0 -P "${TREE}/cmake/ManPage.cmake"
  COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS "${page}" empty REGEX "^:$")
if(empty)
  message(FATAL_ERROR "A heading is empty")
endif()
foreach(heading IN ITEMS "The library's arguments" "The web page that calls it" "What is written"
    "What is expected")
  file(STRINGS "${page}" found REGEX "^${heading}:$")
  if(NOT found)
    message(FATAL_ERROR "There is no heading \"${heading}\"")
  endif()
endforeach()
