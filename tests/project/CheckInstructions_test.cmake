# Puts a counter that always says the same in the place of the real one: the check must accept
# figures within 3 % and name every other. Run with -DCHECK=<CheckInstructions.cmake>
# -DWORK=<scratch directory>.
cmake_minimum_required(VERSION 3.25)

# With these committed figures and this output of the counter the check says `expected`; "" accepts.
function(check figures counted build_type expected)
  string(REPLACE ";" "\n" lines "${figures}")
  file(WRITE "${WORK}/figures.txt" "# some compiler, libxml2 some version\n${lines}\n")
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -DTREE=${WORK} -DPROGRAMS=${WORK} -DBUILD_TYPE=${build_type}
      -DCOMPILER=GNU -DLIBXML2=2 -DTIMES=1 -DFIGURES=${WORK}/figures.txt
      "-DVALGRIND=${CMAKE_COMMAND};-E;echo;${counted};" -P "${CHECK}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  string(REGEX REPLACE "[ \n]+" " " output "${output}")
  if(expected STREQUAL "" AND NOT result EQUAL 0)
    message(SEND_ERROR "${counted} should be accepted, but: ${output}")
  endif()
  string(FIND "${output}" "${expected}" at)
  if(NOT expected STREQUAL "" AND (result EQUAL 0 OR at EQUAL -1))
    message(SEND_ERROR "Nothing says \"${expected}\" about ${counted}: ${output}")
  endif()
endfunction()

set(figures "fields 10000;faulty_rows 10000;reported_rows 10000;grid_rows 10000;cold 10000")
check("${figures}" "Collected : 10000" Release "")
check("${figures}" "Collected : 10300" Release "")
check("${figures}" "Collected : 9700" Release "")
check("${figures}" "Collected : 10301" Release "warm: 10301, committed 10000 (+3.0 %)")
check("${figures}" "Collected : 9601" Release "warm: 9601, committed 10000 (-3.9 %)")
check("${figures}" "Collected : 20000" Release "the whole process: 20000, committed 10000 (+100.0 %)")
check("fields 9000;faulty_rows 10000;reported_rows 10000;grid_rows 10000;cold 10000" "Collected : 10000" Release
  "off: 500 fields, submitted and validated warm: 10000, committed 9000 (+11.1 %) Counted with")
check("${figures}" "Collected : 20000" Release "committed with some compiler, libxml2 some version")
check("fields 10000;faulty_rows 10000;reported_rows 10000;cold 10000" "Collected : 10000" Release
  "500 grid rows, submitted and validated warm: 10000, and no committed figure")
check("${figures}" "Collected : 0" Release "No instructions were counted for 500 fields")
check("${figures}" "Killed" Release "No instructions were counted for 500 fields")
check("${figures}" "Collected : 10000" Debug "counted in a Release build, this one is \"Debug\"")
