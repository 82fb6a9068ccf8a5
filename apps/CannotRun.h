#pragma once

#include <stdexcept>

/// Why the program could not run: bad options, an input that cannot be read, an output that cannot
/// be written. `what` says which and why; it becomes the one line on standard error.
class CannotRun : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};
