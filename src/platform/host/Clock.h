#pragma once

#include "../../result/Export.h"
#include "../text/Date.h"

namespace Varnel_Tolv_XML_Creation {

/// Tells the local date and time.
class VARNEL_EXPORT Clock {
 public:
  virtual ~Clock() = default;
  virtual DateTime now() const = 0;
};

/// The machine's clock in the machine's time zone.
class VARNEL_EXPORT SystemClock : public Clock {
 public:
  DateTime now() const override;
};

/// A clock that stands still.
class VARNEL_EXPORT FixedClock : public Clock {
 public:
  explicit FixedClock(const DateTime& now) : now_(now) {}
  DateTime now() const override { return now_; }

 private:
  DateTime now_;
};

}  // namespace Varnel_Tolv_XML_Creation
