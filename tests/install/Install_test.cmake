# Installs BUILD below WORK, then configures, builds and runs the outside project of this folder
# against it with the compiler and flags (sanitizers) of the build.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
foreach(step IN ITEMS
    "${CMAKE_COMMAND};--install;${BUILD};--prefix;${WORK}/prefix"
    "${CMAKE_COMMAND};-S;${CMAKE_CURRENT_LIST_DIR};-B;${WORK}/build;-G;${GENERATOR};\
-DCMAKE_PREFIX_PATH=${WORK}/prefix;-DCMAKE_CXX_COMPILER=${COMPILER};-DCMAKE_CXX_FLAGS=${FLAGS}"
    "${CMAKE_COMMAND};--build;${WORK}/build"
    "${WORK}/build/host"
    "${WORK}/prefix/bin/varnel-xml;--version")
  execute_process(COMMAND ${step} RESULT_VARIABLE result
    OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${step}\nended with ${result}:\n${output}")
  endif()
endforeach()
