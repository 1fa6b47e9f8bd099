#pragma once
// Display conversion: the stored source pixels of an image, through its contrast
// settings, into its already allocated 24-bit display bitmap.  The source is never
// changed, so any setting can be re-applied from scratch; nothing is allocated here
// (but the threads of a large image), because the image windows run these every time
// they paint.

#include <cstdint>

#include "model/row_bands.h"

namespace sedra {

class Model;
struct OpticalImageDesc;
struct RadiographDesc;

// Rewrites the bits of `optical.Bitmap` from its Pixels through Lower/Upper and the
// colour emphasis.  Returns the number of rows written.
int UpdateOpticalDib(OpticalImageDesc& optical);
int UpdateOpticalDib(Model& model);  // the current section's optical image

// Rewrites the bits of `rad.Bitmap` from its Samples through region 0 and then the
// user regions 1..7.  Returns the number of rows written.
int UpdateRadiographDib(RadiographDesc& rad);
int UpdateRadiographDib(Model& model);  // the current radiograph

// The same in `bands` bands of rows, each on its own thread (1 = all on the calling
// thread).  The bitmap comes out the same whatever the count; the plain form picks it
// with RowBandCount.
int UpdateRadiographDibInBands(RadiographDesc& rad, int bands);

}  // namespace sedra
