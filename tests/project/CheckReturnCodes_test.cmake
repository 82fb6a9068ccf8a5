# Spoils the table of return codes in one way after the other, all in one copy: the check must name
# each. Run with the arguments of CheckReturnCodes.cmake and -DCHECK=<CheckReturnCodes.cmake>.
cmake_minimum_required(VERSION 3.25)

file(READ "${TABLE}" table)

# Replaces what stands in the table below `code` and expects `complaint` about it.
function(spoil code below complaint)
  string(REGEX REPLACE "\n${code}\n(  [^\n]*\n)+" "\n${code}\n${below}" spoilt "${table}")
  if(spoilt STREQUAL table)
    message(SEND_ERROR "The table was not spoilt for ${code}")
  endif()
  set(table "${spoilt}" PARENT_SCOPE)
  set(complaints ${complaints} "${code}: ${complaint}" PARENT_SCOPE)
endfunction()

spoil(PARK_XML_OBJ_MISSING "" "no test raises it")
spoil(ADD_CHILD_NODE_FAILED "  reserved\n" "src/ mentions it, although it is reserved")
spoil(BUILD_MSG_XML_FAILED "" "src/ does not mention it")
spoil(NO_DATA_ADDED "  reserved\n  message/addData.FailsWithoutTheNode\n"
  "it has tests, although it is reserved")
spoil(NODE_MISSING "  message/addData.IsRenamed\n" "there is no test message/addData.IsRenamed")
spoil(INCORRECT_NODE_TYPE "  message/addData.FailsWithoutTheNode\n"
  "message/addData.FailsWithoutTheNode does not raise it")
spoil(PROT_TBL_LIST_MISSING "  never returned: untrue\n  park/ParkProtTable.FailsForNothing\n"
  "park/ParkProtTable.FailsForNothing raises it, although it is never returned")
string(REPLACE "\nNODE_PATH_ERROR\n" "\nNODE_PATHS_ERROR\n" table "${table}")
string(APPEND table "CELL_INFO_MISSING\n")
list(APPEND complaints
  "NODE_PATH_ERROR: the table does not have it"
  "The table has what is no code, or a code twice: NODE_PATHS_ERROR, CELL_INFO_MISSING")

file(WRITE "${WORK}/ReturnCodes.txt" "${table}")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -DTREE=${TREE} -DPROGRAMS=${PROGRAMS} -DWORK=${WORK}
    -DTABLE=${WORK}/ReturnCodes.txt -P "${CHECK}"
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
string(REGEX REPLACE "[ \n]+" " " output "${output}")  # as it was before it was broken into lines
string(REGEX MATCHALL "CMake Error" errors "${output}")
list(LENGTH errors found)
list(LENGTH complaints expected)
if(result EQUAL 0 OR NOT found EQUAL expected)
  message(SEND_ERROR "Instead of ${expected} complaints there are ${found}: ${output}")
endif()
foreach(complaint IN LISTS complaints)
  string(FIND "${output}" "${complaint}" at)
  if(at EQUAL -1)
    message(SEND_ERROR "Nothing says \"${complaint}\": ${output}")
  endif()
endforeach()
