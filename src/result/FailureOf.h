#pragma once

#include <string>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

/// What the run-time error says that a piece of work raises, where a failure is an answer; empty
/// when it raises none. No memory is no answer: that goes on to the caller.
template <class Work>
std::string failureOf(const Work& work) {
  try {
    work();
  } catch (const RuntimeError& error) {
    if (error.number() == kOutOfMemory) throw;
    return error.description();
  }
  return {};
}

}  // namespace Varnel_Tolv_XML_Creation
