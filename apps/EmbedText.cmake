# The text of a file as a C++ literal.
function(embed result file)
  file(READ "${file}" text)
  # A literal may not be longer than compilers must take; neighbours are joined.
  set(literals "")
  string(LENGTH "${text}" length)
  set(at 0)
  while(at LESS length)
    string(SUBSTRING "${text}" ${at} 8000 part)
    string(APPEND literals "R\"~~~(${part})~~~\"\n")
    math(EXPR at "${at} + 8000")
  endwhile()
  set(${result} "${literals}" PARENT_SCOPE)
endfunction()
