# Five fixed runs must take the instructions that were committed for them, give or take 3 %: fewer
# too, so that the figures stay true. Run with -DTREE=<source tree> -DPROGRAMS=<build tree>
# -DBUILD_TYPE=<its build type> -DCOMPILER=<its compiler> -DLIBXML2=<version>
# -DVALGRIND=<command> -DFIGURES=<file>; where VARNEL_UPDATE_INSTRUCTIONS stands in the environment
# the figures are written instead.
cmake_minimum_required(VERSION 3.25)

set(example "${TREE}/examples/inspection")
set(warm --instr-atstart=no --combine-dumps=yes "${PROGRAMS}/bench/counted_run")
set(fields_run ${warm} sections 500)
set(faulty_rows_run ${warm} rows 500 2 1)
set(reported_rows_run ${warm} rows 500 2 1 asked)
set(grid_rows_run ${warm} grid 500)
set(cold_run "${PROGRAMS}/apps/varnel-xml" build --deployment "${example}"
  --form "${example}/complete.form" --submit --validate --now 2026-03-14T12:05:00)
set(fields_says "500 fields, submitted and validated warm")
set(faulty_rows_says "500 dynamic rows with 1 % faulty cells, submitted and validated warm")
set(reported_rows_says "500 dynamic rows with 1 % faulty cells, the same with a report")
set(grid_rows_says "500 grid rows, submitted and validated warm")
set(cold_says "varnel-xml build of the example, the whole process")
set(runs fields faulty_rows reported_rows grid_rows cold)

if(NOT BUILD_TYPE STREQUAL "Release")
  message(FATAL_ERROR "Instructions are counted in a Release build, this one is \"${BUILD_TYPE}\"")
endif()
execute_process(COMMAND ${VALGRIND} --version OUTPUT_VARIABLE valgrind ERROR_QUIET
  OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND getconf GNU_LIBC_VERSION OUTPUT_VARIABLE libc ERROR_QUIET
  OUTPUT_STRIP_TRAILING_WHITESPACE)
set(versions "${COMPILER}, libxml2 ${LIBXML2}, ${libc}, ${valgrind}")

# The least of five counts: libxml2 hashes names differently in each process, and where a large
# block is freed depends on it.
foreach(run IN LISTS runs)
  set(least "")
  foreach(time RANGE 1 5)
    execute_process(
      COMMAND ${VALGRIND} --tool=callgrind --callgrind-out-file=/dev/null ${${run}_run}
      RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0 OR NOT output MATCHES "Collected : ([1-9][0-9]*)")
      message(FATAL_ERROR "No instructions were counted for ${${run}_says} (${result}):\n${output}")
    endif()
    if(least STREQUAL "" OR CMAKE_MATCH_1 LESS least)
      set(least "${CMAKE_MATCH_1}")
    endif()
  endforeach()
  set(${run}_counted "${least}")
  string(APPEND figures "${run} ${least}\n")
endforeach()

if(DEFINED ENV{VARNEL_UPDATE_INSTRUCTIONS})
  file(WRITE "${FIGURES}" "# Written by scripts/count-instructions --update.\n"
    "# ${versions}\n${figures}")
  message(STATUS "Written to ${FIGURES}:\n${figures}")
  return()
endif()

file(STRINGS "${FIGURES}" lines)
foreach(run IN LISTS runs)
  set(committed "${lines}")
  list(FILTER committed INCLUDE REGEX "^${run} [1-9][0-9]*$")
  string(REPLACE "${run} " "" committed "${committed}")
  set(counted "${${run}_counted}")
  if(NOT committed MATCHES "^[0-9]+$")
    string(APPEND wrong "\n  ${${run}_says}: ${counted}, and no committed figure")
    continue()
  endif()
  math(EXPR difference "${counted} - ${committed}")
  set(sign "+")
  if(difference LESS 0)
    set(sign "-")
    math(EXPR difference "-(${difference})")
  endif()
  math(EXPR whole "${difference} * 100 / ${committed}")
  math(EXPR tenth "${difference} * 1000 / ${committed} % 10")
  set(line "${${run}_says}: ${counted}, committed ${committed} (${sign}${whole}.${tenth} %)")
  message(STATUS "${line}")
  math(EXPR beyond "${difference} * 100 - ${committed} * 3")
  if(beyond GREATER 0)
    string(APPEND wrong "\n  ${line}")
  endif()
endforeach()
if(wrong)
  list(FILTER lines INCLUDE REGEX "^# .*libxml2")
  string(REGEX REPLACE "^# " "" lines "${lines}")
  message(FATAL_ERROR "Instructions that are more than 3 % off:${wrong}\n"
    "Counted with ${versions}; committed with ${lines}. Other versions of compiler and libraries "
    "count differently.\nWhere the change is meant: scripts/count-instructions --update")
endif()
