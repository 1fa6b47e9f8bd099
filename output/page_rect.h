#pragma once
// The printable rectangle of a printed page, from the printer margins of defaults.def.

#include <cstdint>

#include "model/model.h"

namespace sedra {

struct DisplaySettings;

// Millimetres to device pixels: dpi x mm / 25, truncated.  25 and not 25.4: every
// printed plot so far has had these margins, so the page must come out the same.
int32_t MarginPixels(int32_t mm, int32_t dpi);

// The page rectangle for a physical page of pageWidth x pageHeight device pixels.
// The bottom margin is converted with the horizontal resolution (printed plots have
// always been laid out that way; with square printer pixels it makes no difference).
IntRect PrintPageRect(const DisplaySettings& settings, int32_t dpiX, int32_t dpiY, int32_t pageWidth,
                      int32_t pageHeight);

}  // namespace sedra
