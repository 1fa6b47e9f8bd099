#pragma once
// Passes over a large image or file shared among the cores: the range is cut into bands
// of consecutive rows (or bytes), one thread each.

#include <algorithm>
#include <cstdint>
#include <exception>
#include <thread>

namespace sedra {

constexpr int kMaxRowBands = 4;

// Bands worth using for a pass over `count` samples (or bytes): 1 below about a
// million (such a pass is done before a thread would have started), else one per core,
// at most kMaxRowBands.
inline int RowBandCount(int64_t count) {
  if (count < (int64_t(1) << 20)) return 1;
  const unsigned cores = std::thread::hardware_concurrency();  // 0 when unknown
  return std::clamp(int(std::min(cores, unsigned(kMaxRowBands))), 1, kMaxRowBands);
}

// Calls work(band, first, end) for band 0..bands-1 (at most kMaxRowBands), the bands
// cutting [0, count) into consecutive, disjoint ranges.  Band 0 runs on the calling
// thread, the others on threads of their own; a band whose thread cannot be started
// runs on the calling thread instead.  Returns once every band is done.  `work` must
// not throw.  A template, so that a single band costs no allocation on the paint path.
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
