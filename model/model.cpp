#include "model/model.h"

#include <cstring>
#include <type_traits>

namespace sedra {

static_assert(std::is_trivially_copyable_v<OpticalImageFields>);
static_assert(std::is_trivially_copyable_v<RadiographFields>);
static_assert(std::is_trivially_copyable_v<CoreSectionFields>);
static_assert(std::is_trivially_copyable_v<PlotState>);

void OpticalImageDesc::Clear() {
  std::memset(static_cast<OpticalImageFields*>(this), 0, sizeof(OpticalImageFields));
  Bitmap.Release();
  Pixels = {};
}

void RadiographDesc::Clear() {
  std::memset(static_cast<RadiographFields*>(this), 0, sizeof(RadiographFields));
  Bitmap.Release();
  Samples = {};
}

Model::Model()
    : plot_(std::make_unique<PlotState>()), sections_(std::make_unique<CoreSection[]>(kMaxSections)) {
  std::memset(plot_.get(), 0, sizeof(PlotState));
  for (int i = 0; i < kMaxSections; ++i) {
    std::memset(static_cast<CoreSectionFields*>(&sections_[size_t(i)]), 0, sizeof(CoreSectionFields));
    sections_[size_t(i)].Optical.Clear();
    for (auto& r : sections_[size_t(i)].Radiographs) r.Clear();
  }
  App.Histogram.assign(65536, 0);
  curves_.Values.assign(size_t(kMaxCurves) * kCurveWorkPoints, 0.0);
  curves_.Offsets.assign(size_t(kMaxCurves) * kCurveWorkPoints, 0);
  curves_.Labels.assign(size_t(kMaxCurves) * kCurveWorkPoints, 0);
}

int Model::CurRadiographSlot() const {
  const int i = plot_->CurRadiographIndex;
  return (i >= 0 && i < kMaxRadiographs) ? i : 0;
}

int Model::CurSectionSlot() const {
  const int i = plot_->CurSectionIndex;
  return (i >= 0 && i < kMaxSections) ? i : 0;
}

void Model::SelectSection(int index) {
  if (index < 0 || index >= kMaxSections) index = 0;
  plot_->CurSectionIndex = index;
  plot_->CurRadiographIndex = 0;
}

void CopyField(char* dest, size_t size, const char* text) {
  if (size == 0) return;
  size_t n = 0;
  if (text) {
    while (n + 1 < size && text[n] != '\0') ++n;
    std::memcpy(dest, text, n);
  }
  dest[n] = '\0';
}

}  // namespace sedra
