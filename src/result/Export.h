#pragma once

/// Marks what hosts may use of the shared library; everything else in it is hidden. A class is
/// marked as a whole, and so is what it throws.
#define VARNEL_EXPORT [[gnu::visibility("default")]]
