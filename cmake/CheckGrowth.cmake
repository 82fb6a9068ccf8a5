# A warm run at n, 2n, 4n and 8n of each thing that there can be more of: what the last doubling adds
# in instructions must be at most 2.3 times what the one before added, which is n log n. Where either
# is less than a hundredth of a run it is noise. Run with -DGROWTH=<program> -DVALGRIND=<command> -DWORK=<scratch
# directory> [-DBOUNDED=<what has a bound that ends its growth,...>].
cmake_minimum_required(VERSION 3.25)

file(MAKE_DIRECTORY "${WORK}")
execute_process(
  COMMAND ${VALGRIND} --tool=callgrind --instr-atstart=no --combine-dumps=yes
    "--callgrind-out-file=${WORK}/counts" "${GROWTH}"
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "No instructions were counted (${result}):\n${output}")
endif()

# A dump is named WHAT.SIZE, and behind its name stands its total.
file(STRINGS "${WORK}/counts" lines REGEX "^(desc: Trigger: Client Request:|totals:) ")
set(name "")
foreach(line IN LISTS lines)
  if(line MATCHES "^desc: .* ([a-z-]+)\\.([0-9]+)$")
    set(name "${CMAKE_MATCH_1}")
    list(APPEND names "${name}")
  elseif(NOT name STREQUAL "" AND line MATCHES "^totals: ([1-9][0-9]*)$")
    list(APPEND counts_of_${name} "${CMAKE_MATCH_1}")
    set(name "")
  endif()
endforeach()
list(REMOVE_DUPLICATES names)
if(NOT names)
  message(FATAL_ERROR "No instructions were counted.")
endif()

string(REPLACE "," ";" BOUNDED "${BOUNDED}")
foreach(name IN LISTS names)
  list(LENGTH counts_of_${name} sizes)
  if(NOT sizes EQUAL 4)
    message(FATAL_ERROR "${name} was counted at ${sizes} sizes instead of four")
  endif()
  list(GET counts_of_${name} 1 two)
  list(GET counts_of_${name} 2 four)
  list(GET counts_of_${name} 3 eight)
  math(EXPR last "${eight} - ${four}")
  math(EXPR before "${four} - ${two}")
  math(EXPR noise "${eight} / 100")
  math(EXPR noise_before "${four} / 100")
  math(EXPR beyond "10 * ${last} - 23 * ${before}")
  set(line "${name}: ${counts_of_${name}}")
  string(REPLACE ";" ", " line "${line}")
  message(STATUS "${line}")
  if(last GREATER noise AND before GREATER noise_before AND beyond GREATER 0
      AND NOT name IN_LIST BOUNDED)
    string(APPEND wrong "\n  ${line}")
  endif()
endforeach()
if(wrong)
  message(FATAL_ERROR "Grows faster than n log n:${wrong}")
endif()
