# Puts a counter that writes figures of its own in the place of the real one: the check must accept
# what grows like n log n and name what grows faster. Run with -DCHECK=<CheckGrowth.cmake>
# -DWORK=<scratch directory>.
cmake_minimum_required(VERSION 3.25)

# With these totals of "rows" the check says `expected`; "" accepts.
function(check totals expected)
  set(dumps "totals: 5\n")
  set(size 1)
  foreach(total IN LISTS totals)
    string(APPEND dumps "desc: Trigger: Client Request: rows.${size}\ntotals: ${total}\n")
    math(EXPR size "2 * ${size}")
  endforeach()
  file(WRITE "${WORK}/dumps" "${dumps}")
  execute_process(
    COMMAND "${CMAKE_COMMAND}" "-DGROWTH=${WORK}/counts" "-DWORK=${WORK}" ${ARGN}
      "-DVALGRIND=${CMAKE_COMMAND};-DFROM=${WORK}/dumps;-DTO=${WORK}/counts;-P;${WORK}/copy.cmake"
      -P "${CHECK}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  string(REGEX REPLACE "[ \n]+" " " output "${output}")
  if(expected STREQUAL "" AND NOT result EQUAL 0)
    message(SEND_ERROR "${totals} should be accepted, but: ${output}")
  endif()
  string(FIND "${output}" "${expected}" at)
  if(NOT expected STREQUAL "" AND (result EQUAL 0 OR at EQUAL -1))
    message(SEND_ERROR "Nothing says \"${expected}\" about ${totals}: ${output}")
  endif()
endfunction()

file(WRITE "${WORK}/copy.cmake" "file(COPY_FILE \"\${FROM}\" \"\${TO}\")\n")
check("1100;1200;1400;1800" "")
check("1100;1200;1400;1860" "")
check("1100;1200;1400;1870" "Grows faster than n log n: rows: 1100, 1200, 1400, 1870")
check("1100;1400;2600;7400" "Grows faster than n log n: rows: 1100, 1400, 2600, 7400")
check("1100;1400;2600;7400" "" -DBOUNDED=columns,rows)
check("10000;10001;10002;10012" "")
check("10000;10050;10150;10800" "")
check("1100;1200;1400" "rows was counted at 3 sizes instead of four")
check("" "No instructions were counted")
