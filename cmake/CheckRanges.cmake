# What Debian 12's clang, with which the fuzzers are built, does not compile of libstdc++'s ranges:
# views, and algorithms whose result is a subrange. Run as
# `cmake [-DTREE=<dir>] -P cmake/CheckRanges.cmake`.
cmake_minimum_required(VERSION 3.25)
if(NOT DEFINED TREE)
  get_filename_component(TREE "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
endif()

set(algorithms equal_range find_end partition remove remove_if rotate search search_n
  stable_partition unique)
list(JOIN algorithms "|" algorithms)
set(refused "std::views|ranges::(views|subrange|[a-z_]+_view|${algorithms})($|[^a-z_])")

file(GLOB_RECURSE files RELATIVE "${TREE}" "${TREE}/src/*.h" "${TREE}/src/*.cpp"
  "${TREE}/apps/*.h" "${TREE}/apps/*.cpp" "${TREE}/fuzz/*.h" "${TREE}/fuzz/*.cpp")
foreach(file IN LISTS files)
  file(STRINGS "${TREE}/${file}" lines REGEX "${refused}")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "//.*$" "" code "${line}")
    if(code MATCHES "${refused}")
      string(REGEX MATCH "[a-z_:]*[a-z]" name "${CMAKE_MATCH_0}")
      string(APPEND broken "\n  ${file} uses ${name}")
    endif()
  endforeach()
endforeach()
if(NOT files OR broken)
  message(FATAL_ERROR "Debian 12's clang 14, which builds the fuzzers, does not compile views nor "
    "algorithms of std::ranges that return a subrange; write a loop, or the algorithm of std:: "
    "with iterators:${broken}")
endif()
