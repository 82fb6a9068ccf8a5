# The block between the markers of README.md is examples/readme/main.cpp, character for character.
cmake_minimum_required(VERSION 3.25)

file(READ "${TREE}/README.md" readme)
file(READ "${TREE}/examples/readme/main.cpp" example)
set(begin "<!-- examples/readme/main.cpp -->\n```cpp\n")
string(FIND "${readme}" "${begin}${example}```\n<!-- end -->\n" at)
if(at EQUAL -1)
  message(FATAL_ERROR "The example in README.md is not examples/readme/main.cpp")
endif()
