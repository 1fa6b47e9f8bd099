#pragma once
// Automatic contrast of a radiograph region: a window that leaves about 2% of the
// samples below it and about 2% of the rest above it.

namespace sedra {

class Model;

// Sets Lower and Upper of region `region` (0..7) of the current radiograph from the
// histogram of its samples, counted every SampleStep rows and columns.  Uses the
// model's 65536-counter histogram and sets its bin width (MaxValue / 1024, at least 1).
// Large images are counted in bands of rows on several threads (see RowBandCount).
void AutoContrast(Model& model, int region);

// The same in `bands` bands of rows (1 = all on the calling thread; 0 = as many as
// AutoContrast would use).  Lower and Upper come out the same whatever the count.
void AutoContrastInBands(Model& model, int region, int bands);

}  // namespace sedra
