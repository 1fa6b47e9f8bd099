#include "output/page_rect.h"

#include "model/settings_blocks.h"

namespace sedra {

int32_t MarginPixels(int32_t mm, int32_t dpi) {
  // 64-bit product so that odd resolutions cannot overflow; division truncates
  // toward zero, negative margins included.
  return int32_t(int64_t(dpi) * mm / 25);
}

IntRect PrintPageRect(const DisplaySettings& settings, int32_t dpiX, int32_t dpiY, int32_t pageWidth,
                      int32_t pageHeight) {
  IntRect r;
  r.Left = MarginPixels(settings.MarginLeft, dpiX);
  r.Top = MarginPixels(settings.MarginTop, dpiY);
  r.Right = pageWidth - MarginPixels(settings.MarginRight, dpiX);
  r.Bottom = pageHeight - MarginPixels(settings.MarginBottom, dpiX);
  return r;
}

}  // namespace sedra
