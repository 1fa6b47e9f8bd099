#include "import/read_support.h"

#include <filesystem>

#include "model/model.h"

namespace sedra {

void AllocateDib(Dib& dib, int32_t width, int32_t height) {
  const int32_t stride = Dib::StrideFor(width);
  dib.Bits.assign(size_t(stride) * size_t(height), 0);
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
