# Runs one form of the example by the program and by the C interface: all that comes out must be the
# same. Run with -DPROGRAM= -DC_TESTS= -DEXAMPLE= -DFORM= -DWORK=.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}/c" "${WORK}/program")
execute_process(COMMAND "${PROGRAM}" build --deployment "${EXAMPLE}" --form "${EXAMPLE}/${FORM}.form"
  --submit --validate --report --now 2025-10-14T12:05:00 --park-out park.xml --send-out send.xml
  --result result.json WORKING_DIRECTORY "${WORK}/program" RESULT_VARIABLE status)
if(NOT status MATCHES "^[01]$")
  message(FATAL_ERROR "The program ended with ${status}")
endif()
execute_process(COMMAND "${C_TESTS}" "${EXAMPLE}" --write "${FORM}.form"
  WORKING_DIRECTORY "${WORK}/c" COMMAND_ERROR_IS_FATAL ANY)
file(GLOB written RELATIVE "${WORK}/program" "${WORK}/program/*")
list(LENGTH written count)
if(count LESS 2)
  message(FATAL_ERROR "The program wrote ${written}")
endif()
foreach(file IN LISTS written)
  execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${WORK}/program/${file}"
    "${WORK}/c/${file}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
