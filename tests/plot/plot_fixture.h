#pragma once
// Shared set-up of the plot tests: a model loaded with synthetic images the way a read
// fills it, and painting into a 96-dpi image.

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "model/core.h"
#include "model/model.h"
#include "plot/paint_context.h"
#include "plot/paint_plot.h"

// Readable colours in failure messages.
inline void PrintTo(const QColor& c, std::ostream* os) { *os << c.name().toStdString(); }

namespace sedra::test {

// Fills a Dib of the given size with one colour (0xRRGGBB), or with a colour per row
// or per pixel when `colour` takes the row or the column and row.
template <typename Colour>
void FillDib(Dib& dib, int width, int height, Colour colour) {
  dib.Width = width;
  dib.Height = height;
  dib.Stride = Dib::StrideFor(width);
  dib.Bits.assign(size_t(dib.Stride) * size_t(height), 0);
  for (int y = 0; y < height; ++y) {
    uint8_t* row = dib.Bits.data() + size_t(y) * size_t(dib.Stride);
    for (int x = 0; x < width; ++x) {
      uint32_t c;
      if constexpr (std::is_invocable_v<Colour, int, int>)
        c = colour(x, y);
      else
        c = colour(y);
      row[3 * x] = uint8_t(c & 0xFF);            // blue
      row[3 * x + 1] = uint8_t((c >> 8) & 0xFF);  // green
      row[3 * x + 2] = uint8_t((c >> 16) & 0xFF); // red
    }
  }
  ++dib.Generation;
}
inline void FillDib(Dib& dib, int width, int height, uint32_t rgb) {
  FillDib(dib, width, height, [rgb](int) { return rgb; });
}

// A fresh core showing images, as after start-up.
inline void StartCore(Model& model) {
  NewCore(model, nullptr);
  // The settings' default colour table (0x00BBGGRR): white background, blue axis,
  // black text, green/grey/purple annotations.
  const uint32_t colours[kColourTableSize] = {0xFFFFFF, 0xFF0000, 0x000000, 0x008000, 0x008000,
                                              0xC0C0C0, 0x800080, 0x008000, 0xFF00FF};
  std::memcpy(model.App.Settings.Colours, colours, sizeof colours);
  model.App.Settings.ElementFontSize = 9;
  model.App.Settings.HScaleFontSize = 6;
  model.App.Settings.DepthFontSize = 8;
  model.Work().ShowRadiograph = 1;
  model.Work().ShowOptical = 1;
}

// Adds radiograph `slot` of the current section (width x height pixels, one colour or
// a colour per row or pixel) as a read does, then derives the depth axis when it is the first.
template <typename Colour>
void AddRadiograph(Model& model, int slot, int width, int height, Colour colour) {
  CoreSection& sec = model.CurSection();
  RadiographDesc& rad = sec.Radiographs[size_t(slot)];
  rad.Clear();
  rad.Width = width;
  rad.Height = height;
  rad.Valid = 1;
  rad.HeightScale = 1.0f;
  rad.Samples.assign(size_t(width) * size_t(height), 1000);
  FillDib(rad.Bitmap, width, height, colour);
  sec.RadiographCount = std::max(sec.RadiographCount, slot + 1);
  if (slot == 0) {
    model.Work().SampleStep = 1;
    UpdateMenusAfterLoad(model, true);
  }
}

// A radiograph section as a read leaves it: `rows` points of 0.2 mm starting at
// `start` mm, 8 grey columns wide.
inline void LoadSection(Model& m, int rows, int start = 0) {
  m.Work().StartCoordinate = float(start);
  CopyField(m.CurSection().StepSizeText, "200 um");
  AddRadiograph(m, 0, 8, rows, 0x808080u);
}

inline void AddOptical(Model& model, int width, int height, uint32_t rgb) {
  OpticalImageDesc& o = model.CurSection().Optical;
  o.Clear();
  o.Width = width;
  o.Height = height;
  o.Valid = 1;
  o.CropLeft = 0;
  o.CropTop = 0;
  o.CropRight = width - 1;
  o.CropBottom = height - 1;
  o.Upper = 256;
  FillDib(o.Bitmap, width, height, rgb);
  o.Pixels = o.Bitmap.Bits;
  UpdateMenusAfterLoad(model, false);
}

inline QImage MakeImage(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.setDotsPerMeterX(3780);  // 96 dpi
  image.setDotsPerMeterY(3780);
  image.fill(Qt::magenta);  // anything PaintPlot leaves unpainted shows
  return image;
}

// PaintPlot into a new image; the layout it drew goes to *layout when given.
inline QImage Paint(Model& model, int width, int height, int scroll = 0, PlotLayout* layout = nullptr) {
  QImage image = MakeImage(width, height);
  QPainter painter(&image);
  PaintTarget target;
  target.Client = image.rect();
  target.ScrollPos = scroll;
  const PlotLayout drawn = PaintPlot(model, painter, target);
  if (layout) *layout = drawn;
  return image;
}

inline uint32_t Rgb(const QImage& image, int x, int y) { return image.pixel(x, y) & 0xFFFFFF; }

// True when nothing but white was painted.
inline bool Blank(const QImage& image) {
  QImage white(image.size(), image.format());
  white.fill(Qt::white);
  return image == white;
}

// Character height at 96 dpi of the 11-point bold plot font (MulDiv(11, 96, 72) = 15
// pixels) or the 8-point label font (11 pixels), measured on the substitute face.
inline int CharHeight(int pixels = 15, bool bold = true) {
  QFont f(QStringLiteral("Liberation Sans"));
  f.setPixelSize(pixels);
  f.setBold(bold);
  QImage probe = MakeImage(1, 1);
  const QFontMetrics fm(f, &probe);
  return fm.ascent() + fm.descent();
}

// A white 96-dpi image with `draw` run on a PaintContext whose document starts at originY.
template <typename Draw>
QImage PaintWith(Model& model, Draw draw, int width, int height, int originY = 0) {
  QImage image = MakeImage(width, height);
  image.fill(Qt::white);
  QPainter painter(&image);
  PaintContext ctx(painter, model, originY, image.rect());
  draw(ctx);
  painter.end();
  return image;
}

}  // namespace sedra::test
