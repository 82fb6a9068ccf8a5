#pragma once

#include <pthread.h>

namespace Varnel_Tolv_XML_Creation {

/// Puts a cancellation of this thread (pthread_cancel) off while it lives: unwinding would end the
/// process at the first frame that lets no exception through, of which the XML library has many.
class CancellationHeld {
 public:
  CancellationHeld() noexcept { ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_); }
  ~CancellationHeld() { ::pthread_setcancelstate(before_, nullptr); }
  CancellationHeld(const CancellationHeld&) = delete;
  CancellationHeld& operator=(const CancellationHeld&) = delete;

 private:
  int before_ = PTHREAD_CANCEL_ENABLE;
};

}  // namespace Varnel_Tolv_XML_Creation
