#include "import/read_support.h"

#include <cstring>
#include <filesystem>

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include "model/model.h"

namespace sedra {

namespace {

// A section's bitmap and samples run to a hundred megabytes or more.  Filled a 4 KiB
// page at a time, the first touch of every page costs a trip into the kernel that
// takes longer than writing the page; asking for large pages before the first write
// saves nearly all of them.  Only a wish: where large pages are not to be had, the
// block is filled as before.  The block is not cleared here: the kernel's pages come
// zeroed anyway, and the reader's own write of every element is the first touch.
template <typename T>
void AllocateUncleared(std::vector<T, DefaultInitAllocator<T>>& v, size_t count) {
  if (v.capacity() < count) {
    v = {};
    v.reserve(count);
  }
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  constexpr uintptr_t kLarge = uintptr_t(2) << 20;
  const size_t bytes = count * sizeof(T);
  if (bytes >= 4 * kLarge) {
    const uintptr_t begin = (reinterpret_cast<uintptr_t>(v.data()) + kLarge - 1) & ~(kLarge - 1);
    const uintptr_t end = (reinterpret_cast<uintptr_t>(v.data()) + bytes) & ~(kLarge - 1);
    if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
  }
#endif
  v.clear();
  v.resize(count);
}

}  // namespace

int64_t ImageMemory(int64_t width, int64_t height, int sourceBytes) {
  if (width <= 0 || height <= 0) return 0;
  // Worked out in floating point: a header may claim 2^32 x 2^32 pixels.
  const double w = double(width), h = double(height);
  const double stride = double((width * 3 + 3) & ~int64_t(3));
  const double bytes = w * h * sourceBytes + stride * h + w * h * 4.0 * 4.0 / 3.0;
  return bytes >= double(INT64_MAX / 2) ? INT64_MAX / 2 : int64_t(bytes);
}

bool WithinMemoryCeiling(int64_t imageBytes, int64_t workBytes, int64_t ceiling) {
  return imageBytes >= 0 && workBytes >= 0 && imageBytes <= ceiling && workBytes <= ceiling - imageBytes;
}

void AllocateSamples(SampleBuffer& samples, size_t count) { AllocateUncleared(samples, count); }

void AllocateBytes(ByteBuffer& bytes, size_t count) { AllocateUncleared(bytes, count); }

void AllocateDib(Dib& dib, int32_t width, int32_t height) {
  const int32_t stride = Dib::StrideFor(width);
  AllocateUncleared(dib.Bits, size_t(stride) * size_t(height));
  // The conversions write only the pixels and leave the padding as it is, so it is
  // zeroed once here.  Scanner widths are mostly a multiple of 4, with no padding at all.
  const size_t rowBytes = size_t(width) * 3;
  if (size_t(stride) > rowBytes)
    for (int32_t y = 0; y < height; ++y)
      std::memset(dib.Bits.data() + size_t(y) * size_t(stride) + rowBytes, 0, size_t(stride) - rowBytes);
  dib.Width = width;
  dib.Height = height;
  dib.Stride = stride;
  ++dib.Generation;
}

void RememberFolder(Model& model, const std::string& chosenPath) {
  const std::string folder = std::filesystem::path(chosenPath).parent_path().string();
  CopyField(model.Settings().SectionFolder, folder.c_str());
}

std::string LastComponent(const std::string& folder) {
  std::filesystem::path p(folder);
  // "/data/core/" names the same folder as "/data/core".
  if (!p.has_filename() && p.has_relative_path()) p = p.parent_path();
  return p.filename().string();
}

void ApplyOffsetCorrection(RadiographDesc& rad, uint32_t minimum, uint32_t maximum, bool shifted) {
  // The scanner writes its signed counts with 32768 added; such a file has no sample
  // at or below 32768, and only then is the offset taken off again.
  const bool offset = minimum > 32768;
  if (offset != shifted)
    for (uint16_t& s : rad.Samples) s = uint16_t(s ^ kOffsetBit);
  if (offset) maximum -= 32768;
  rad.MaxValue = int32_t(maximum > 65535 ? 65535 : maximum);
}

}  // namespace sedra
