# The block between the markers of DOCUMENT is EXAMPLE, character for character; both below TREE.
cmake_minimum_required(VERSION 3.25)

file(READ "${TREE}/${DOCUMENT}" document)
file(READ "${TREE}/${EXAMPLE}" example)
string(FIND "${document}" "<!-- ${EXAMPLE} -->\n```cpp\n${example}```\n<!-- end -->\n" at)
if(at EQUAL -1)
  message(FATAL_ERROR "What ${DOCUMENT} shows is not ${EXAMPLE}")
endif()
