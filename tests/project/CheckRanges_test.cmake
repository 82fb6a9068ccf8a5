# Puts one line after the other into a small tree: the check must accept what Debian's clang
# compiles and name what it does not. Run with -DCHECK=<CheckRanges.cmake> -DWORK=<scratch
# directory>.
cmake_minimum_required(VERSION 3.25)

function(check file line expected)
  file(REMOVE_RECURSE "${WORK}")
  file(WRITE "${WORK}/src/park/Other.cpp" "std::ranges::sort(ids);\n")
  file(WRITE "${WORK}/${file}" "int before;\n${line}\n")
  execute_process(COMMAND "${CMAKE_COMMAND}" -DTREE=${WORK} -P "${CHECK}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(expected STREQUAL "allowed")
    if(NOT result EQUAL 0)
      message(SEND_ERROR "${line} is compiled, but: ${output}")
    endif()
  elseif(result EQUAL 0 OR NOT output MATCHES "${file} uses ${expected}\n")
    message(SEND_ERROR "${line} is not compiled, but: ${output}")
  endif()
endfunction()

check(src/check/A.h    "#include <ranges>"                                          allowed)
check(src/check/A.h    "template <std::ranges::forward_range Known>"                allowed)
check(src/check/A.cpp  "std::ranges::sort(ids)\;"                                   allowed)
check(src/check/A.cpp  "const auto found = std::ranges::find_if(ids, isOne)\;"      allowed)
check(src/check/A.cpp  "std::ranges::unique_copy(ids, others.begin())\;"            allowed)
check(src/check/A.cpp  "at = std::ranges::partition_point(ids, isOne)\;"            allowed)
check(src/check/A.cpp  "ids.erase(std::unique(ids.begin(), ids.end()), ids.end())\;" allowed)
check(src/check/A.cpp  "for (const Id& id : ids) {  // no std::views::filter here"  allowed)
check(src/check/A.cpp  "page.views::draw()\;"                                       allowed)
check(tests/check/A.cpp "for (int id : std::views::iota(1, 3)) use(id)\;"           allowed)

check(src/check/A.cpp  "for (const Id& id : ids | std::views::filter(isOne)) use(id)\;"
  "std::views")
check(src/check/A.h    "namespace views = std::ranges::views\;"       "ranges::views")
check(apps/host/A.cpp  "for (int id : std::views::iota(1, 3)) use(id)\;"   "std::views")
check(fuzz/A.cpp       "std::ranges::subrange rest(ids.begin(), ids.end())\;" "ranges::subrange")
check(src/check/A.cpp  "std::ranges::single_view one(id)\;"           "ranges::single_view")
check(src/check/A.cpp  "using std::ranges::unique\;"                  "ranges::unique")
foreach(algorithm IN ITEMS equal_range find_end partition remove remove_if rotate search search_n
    stable_partition unique)
  check(src/check/A.cpp "const auto rest = std::ranges::${algorithm}(ids, [](int) {"
    "ranges::${algorithm}")
endforeach()
