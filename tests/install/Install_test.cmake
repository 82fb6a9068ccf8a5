# Installs BUILD below WORK and uses what is there as outsiders do, with the compiler and flags
# (sanitizers) of the build: a CMake project, a program built with pkg-config, the programs, their
# manual pages and the completion of the shell.
cmake_minimum_required(VERSION 3.25)
set(prefix "${WORK}/prefix")

function(run)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "OUTPUT" "COMMAND")
  execute_process(COMMAND ${arg_COMMAND} RESULT_VARIABLE result
    OUTPUT_VARIABLE output ERROR_VARIABLE errors OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${arg_COMMAND}\nended with ${result}:\n${output}\n${errors}")
  endif()
  if(arg_OUTPUT)
    set(${arg_OUTPUT} "${output}" PARENT_SCOPE)
  endif()
endfunction()

file(REMOVE_RECURSE "${WORK}")
run(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${prefix}")

# The headers stand below one folder of our own, and no seam of the tests is among them.
file(GLOB headers RELATIVE "${prefix}" "${prefix}/include/*")
if(NOT headers STREQUAL "include/varnel-xml-creation-16")
  message(SEND_ERROR "The include directory holds ${headers}")
endif()
file(GLOB headers RELATIVE "${prefix}/${headers}" "${prefix}/${headers}/*")
if(NOT headers STREQUAL "varnel_xml.h;varnel_xml_creation")
  message(SEND_ERROR "What hosts have in their include path holds ${headers}")
endif()
file(GLOB_RECURSE seams "${prefix}/include/*Fault*")
if(seams)
  message(SEND_ERROR "Seams of the tests are installed: ${seams}")
endif()

# Whatever a header lets hosts call is marked for the shared library to show.
file(GLOB_RECURSE headers "${prefix}/include/varnel-xml-creation-16/varnel_xml_creation/*.h")
foreach(header IN LISTS headers)
  file(STRINGS "${header}" unmarked
    REGEX "^(class|struct) ?.*[A-Za-z]+ (final )?(: .*)?{$|^[a-z][A-Za-z0-9_:<>*& ]*[ &*][A-Za-z]+\\(")
  list(FILTER unmarked EXCLUDE REGEX "^(constexpr|inline|template|struct [A-Z]|using|#) ?|VARNEL_EXPORT")
  if(unmarked)
    message(SEND_ERROR "${header} has what VARNEL_EXPORT is missing from: ${unmarked}")
  endif()
endforeach()

# The shared library shows nothing but what is ours.
file(GLOB_RECURSE library "${prefix}/*/libvarnel-xml-creation.so.16")
if(NOT library)
  message(FATAL_ERROR "There is no libvarnel-xml-creation.so.16")
endif()
cmake_path(GET library PARENT_PATH library_dir)
run(COMMAND objdump -p "${library}" OUTPUT header)
if(NOT header MATCHES "SONAME +libvarnel-xml-creation\\.so\\.16\n")
  message(SEND_ERROR "The library has another name:\n${header}")
endif()
run(COMMAND nm --dynamic --defined-only --demangle "${library}" OUTPUT symbols)
string(REPLACE ";" "<semicolon>" symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")
set(count 0)
foreach(symbol IN LISTS symbols)
  string(REGEX REPLACE "^[0-9a-f]+ . " "" name "${symbol}")
  string(REGEX REPLACE "^((typeinfo|typeinfo name|vtable) for )" "" name "${name}")
  if(name MATCHES "^(Varnel_Tolv_XML_Creation::|varnel_xml_)")
    math(EXPR count "${count} + 1")
  elseif(NOT name MATCHES "^VARNEL_XML_CREATION_16")
    message(SEND_ERROR "The library shows ${symbol}")
  endif()
endforeach()
if(count LESS 50 OR count GREATER 400)
  message(SEND_ERROR "The library shows ${count} symbols of its own")
endif()

# A project that finds the package with CMake, linked with either library.
run(COMMAND "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${WORK}/build" -G "${GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_C_COMPILER=${C_COMPILER}"
  "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_C_FLAGS=${FLAGS}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build")
run(COMMAND "${WORK}/build/with_XmlCreation")
run(COMMAND "${WORK}/build/with_XmlCreationStatic")
run(COMMAND "${WORK}/build/in_c" "${EXAMPLE}" "${EXAMPLE}/complete.form")

# The same program with pkg-config, linked with either library.
set(ENV{PKG_CONFIG_PATH} "${library_dir}/pkgconfig")
separate_arguments(flags UNIX_COMMAND "${FLAGS}")
run(COMMAND pkg-config --cflags --libs varnel-xml-creation OUTPUT shared)
run(COMMAND pkg-config --cflags --libs --static varnel-xml-creation OUTPUT static)
string(REPLACE "-lvarnel-xml-creation" "-l:libvarnel-xml-creation.a" static "${static}")
foreach(kind IN ITEMS shared static)
  separate_arguments(words UNIX_COMMAND "${${kind}}")
  run(COMMAND "${COMPILER}" -std=c++20 ${flags} "${CMAKE_CURRENT_LIST_DIR}/main.cpp"
    -o "${WORK}/${kind}" ${words})
  run(COMMAND "${CMAKE_COMMAND}" -E env "LD_LIBRARY_PATH=${library_dir}" "${WORK}/${kind}")
endforeach()

# The Python module, below an interpreter that no sanitizer knows.
if(NOT FLAGS MATCHES "-fsanitize")
  run(COMMAND "${CMAKE_COMMAND}" -E env "PYTHONPATH=${prefix}/lib/python3/dist-packages"
    "LD_LIBRARY_PATH=${library_dir}" python3 -B "${CMAKE_CURRENT_LIST_DIR}/main.py" "${EXAMPLE}"
    "${EXAMPLE}/complete.form" OUTPUT told)
  if(NOT told STREQUAL "verdict: valid" OR
      NOT EXISTS "${prefix}/lib/python3/dist-packages/varnel_xml/py.typed")
    message(SEND_ERROR "The Python module told \"${told}\"")
  endif()
endif()

# Every option of --help stands in the manual page, each sub-command's too.
function(check_page program section)
  run(COMMAND gzip -dc "${prefix}/share/man/man${section}/${program}.${section}.gz" OUTPUT page)
  string(REPLACE "\\-" "-" page "${page}")
  run(COMMAND "${prefix}/bin/${program}" --help OUTPUT help)
  string(REGEX MATCH "\nSubcommands:.*" commands "${help}")
  string(REGEX MATCHALL "\n  [a-z-]+" commands "${commands}")
  foreach(command IN LISTS commands)
    string(STRIP "${command}" command)
    run(COMMAND "${prefix}/bin/${program}" ${command} --help OUTPUT more)
    string(APPEND help "\n${more}")
    if(NOT page MATCHES "\n\\.SS ${command}\n")
      message(SEND_ERROR "${program}.${section} does not have ${command}")
    endif()
  endforeach()
  string(REGEX MATCHALL "--[a-z][a-z-]+" options "${help}")
  list(REMOVE_DUPLICATES options)
  list(LENGTH options count)
  if(count LESS 8)
    message(SEND_ERROR "${program} --help tells of ${count} options")
  endif()
  foreach(option IN LISTS options)
    if(NOT page MATCHES "\\.TP\n\\\\fB(-h,)?${option}\\\\fR")
      message(SEND_ERROR "${program}.${section} does not have ${option}")
    endif()
  endforeach()
  run(COMMAND "${prefix}/bin/${program}" --version)
endfunction()
check_page(varnel-xml 1)
check_page(varnel-xml-host 8)

# What bash completes: sub-commands, options, and what an option takes.
function(check_completion program words expected)
  run(OUTPUT completed COMMAND bash -c "
    source '${prefix}/share/bash-completion/completions/${program}'
    cd '${CMAKE_CURRENT_LIST_DIR}'
    COMP_WORDS=('${prefix}/bin/${program}' ${words}); COMP_CWORD=$((\${#COMP_WORDS[@]} - 1))
    _varnel_xml; printf '%s ' \"\${COMPREPLY[@]}\"")
  string(STRIP "${completed}" completed)
  if(NOT completed STREQUAL expected)
    message(SEND_ERROR "\"${program} ${words}\" is completed to \"${completed}\"")
  endif()
endfunction()
check_completion(varnel-xml "bui" "build")
check_completion(varnel-xml "--vers" "--version")
check_completion(varnel-xml "build --object-" "--object-mapper --object-list")
check_completion(varnel-xml "build --date-order ''" "dmy mdy ymd")
check_completion(varnel-xml "build --template main.cp" "main.cpp")
check_completion(varnel-xml "build --now 2" "")
check_completion(varnel-xml-host "--max-" "--max-body --max-rows --max-cells")
