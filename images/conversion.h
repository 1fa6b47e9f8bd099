#pragma once
// Display conversion: the stored source pixels of an image, through its contrast
// settings, into its already allocated 24-bit display bitmap.  The source is never
// changed, so any setting can be re-applied from scratch; nothing is allocated here
// (but the threads of a large image), because the image windows run these every time
// they paint.

#include <algorithm>
#include <cstdint>
#include <exception>
#include <thread>

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

// Whole-image passes over a large radiograph share the work among the cores.
constexpr int kMaxRowBands = 4;
// Bands worth using for a pass over `samples` samples: 1 below about a million (a small
// image is done before a thread would have started), else one per core, at most
// kMaxRowBands.
int RowBandCount(int64_t samples);
// Calls work(band, first, end) for band 0..bands-1 (at most kMaxRowBands), the bands
// cutting [0, count) into consecutive, disjoint ranges.  Band 0 runs on the calling
// thread, the others on threads of their own; a band whose thread cannot be started
// runs on the calling thread instead.  Returns once every band is done.  A template,
// so that a single band costs no allocation on the paint path.
template <class Work>
void ForEachRowBand(int bands, int64_t count, const Work& work) {
  bands = int(std::clamp<int64_t>(std::min<int64_t>(bands, count), 1, kMaxRowBands));
  auto first = [&](int band) { return count * band / bands; };
  // jthreads join when they go, so no thread outlives this call, whatever happens.
  std::jthread threads[kMaxRowBands];
  int started = 1;
  try {
    for (; started < bands; ++started)
      threads[started] = std::jthread([&work, started, from = first(started), to = first(started + 1)] {
        work(started, from, to);
      });
  } catch (const std::exception&) {
    // No more threads to be had: the bands not started run here, one after another.
  }
  work(0, first(0), first(1));
  for (int band = started; band < bands; ++band) work(band, first(band), first(band + 1));
  for (std::jthread& t : threads)
    if (t.joinable()) t.join();
}

}  // namespace sedra
