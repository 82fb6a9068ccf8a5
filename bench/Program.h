#pragma once

#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

// What all programs here do alike.

namespace Varnel_Tolv_XML_Creation::bench {

/// The exit status of a program that does this work: 1 when it raises something, which standard
/// error then tells.
template <class Work>
int exitStatusOf(const Work& work) {
  try {
    work();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}

inline void expect(bool blnTrue, std::string_view strWhat) {
  if (!blnTrue) throw std::runtime_error(std::string(strWhat));
}

}  // namespace Varnel_Tolv_XML_Creation::bench
