#include "import/raw_reader.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "model/messages.h"
#include "model/model.h"
#include "model/prompt.h"

namespace sedra {
namespace {

// Longest line the display can take: SampleStep x values per line stays within it.
constexpr int kMaxRawRows = 32760;

struct BusyScope {
  explicit BusyScope(Prompt& p) : prompt(p) { prompt.SetBusy(true); }
  ~BusyScope() { prompt.SetBusy(false); }
  Prompt& prompt;
};

void SetResolution(WorkingBlock& work, int expand, int group) {
  work.SampleStep = expand;
  work.RawLineGroup = group;
}

// Walks the text line by line.  A count is built digit by digit in 16 bits (so long
// numbers wrap), and every other character ends it: the count is added to the current
// accumulator, which then moves on.  CR or LF also ends the line, taking one LF after it.
class RawText {
 public:
  explicit RawText(std::string_view text) : p_(text.data()), end_(text.data() + text.size()) {}

  void AddLine(uint16_t* acc, size_t accCount) {
    size_t index = 0;
    for (;;) {
      const uint16_t number = NextNumber();
      if (p_ >= end_) {
        if (index < accCount) acc[index] = uint16_t(acc[index] + number);
        return;
      }
      if (index < accCount) acc[index] = uint16_t(acc[index] + number);
      ++index;
      const char c = *p_++;
      if (c == '\r' || c == '\n') {
        if (p_ < end_ && *p_ == '\n') ++p_;
        return;
      }
    }
  }

 private:
  // Reads the digits at p_ (possibly none) and leaves p_ on the character after them.
  uint16_t NextNumber() {
    if (end_ - p_ >= 8) {
      uint64_t v;
      std::memcpy(&v, p_, 8);
      // Bit 7 of each byte: set for '0'..'9'.  The low seven bits are added to without
      // carrying into the next byte; bytes of 0x80 and above are never digits.
      const uint64_t low7 = v & 0x7F7F7F7F7F7F7F7FULL;
      const uint64_t atLeast0 = low7 + 0x5050505050505050ULL;
      const uint64_t above9 = low7 + 0x4646464646464646ULL;
      const uint64_t digits = atLeast0 & ~above9 & ~v & 0x8080808080808080ULL;
      const uint64_t others = ~digits & 0x8080808080808080ULL;
      if (others != 0) {
        const int length = __builtin_ctzll(others) >> 3;
        p_ += length;
        if (length == 0) return 0;
        // Digits moved to the top bytes, then combined pairwise into one value; its low
        // 16 bits are what digit-by-digit arithmetic in 16 bits gives.
        uint64_t d = (v - 0x3030303030303030ULL) << (8 * (8 - length));
        d = d * 10 + (d >> 8);
        d = (((d & 0x000000FF000000FFULL) * (100 + (1000000ULL << 32))) +
             (((d >> 16) & 0x000000FF000000FFULL) * (1 + (10000ULL << 32)))) >>
            32;
        return uint16_t(d);
      }
    }
    uint16_t number = 0;
    while (p_ < end_ && unsigned(*p_ - '0') < 10u) number = uint16_t(number * 10 + (*p_++ - '0'));
    return number;
  }

  const char* p_;
  const char* end_;
};

// Spreads the n counts of one column over n x expand rows of a band `stride` samples
// wide, stepping linearly from each count towards the next (the last one is repeated).
// Inlined with each constant expand of the four resolutions, the step's division
// becomes a multiplication.
template <int64_t stride>
inline __attribute__((always_inline)) void SpreadColumn(const uint16_t* acc, int n, int expand, uint16_t* out,
                                                        uint32_t& minimum, uint32_t& maximum) {
  uint32_t lo = minimum, hi = maximum;
  for (int j = 0; j < n; ++j) {
    int v = acc[j];
    lo = std::min(lo, uint32_t(v));
    hi = std::max(hi, uint32_t(v));
    const int d = j < n - 1 ? (v - int(acc[j + 1])) / expand : 0;
    uint16_t* o = out + size_t(j) * size_t(expand) * stride;
    for (int k = 0; k < expand; ++k) {
      o[size_t(k) * stride] = uint16_t(v);
      v -= d;
    }
  }
  minimum = lo;
  maximum = hi;
}

}  // namespace

ReadOutcome ParseRawRadiograph(Model& model, Prompt& prompt, std::string_view text, bool maxRes, int64_t maxPixels) {
  WorkingBlock& work = model.Work();
  if (maxRes) SetResolution(work, 10, 1);
  else SetResolution(work, 5, 2);

  // Lines are counted by LF; the values used per line by the tabs of the first line.
  int64_t lines = 0;
  const char* firstLf = nullptr;
  for (const char* p = text.data(), *end = p + text.size(); p < end;) {
    const void* hit = std::memchr(p, '\n', size_t(end - p));
    if (!hit) break;
    const char* lf = static_cast<const char*>(hit);
    if (!firstLf) firstLf = lf;
    ++lines;
    p = lf + 1;
  }
  if (lines == 0) {
    prompt.Message(msg::kNoNewLines, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  const int64_t values = std::count(text.data(), firstLf, '\t');
  if (values == 0) {
    prompt.Message(msg::kNoTabs, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }

  RadiographDesc& cleared = model.CurRadiograph();
  cleared.Clear();

  // The image may be at most kMaxRawRows high: step the resolution down until it fits.
  while (values > kMaxRawRows / work.SampleStep) {
    if (work.SampleStep == 10) {
      prompt.Message(msg::kTooLargeMaxRes, msg::kDefaultCaption, Icon::None, Buttons::Ok);
      SetResolution(work, 5, 2);
    } else if (work.SampleStep == 5) {
      SetResolution(work, 3, 3);
    } else if (work.SampleStep == 3) {
      SetResolution(work, 1, 10);
    } else {
      prompt.Message(msg::kTooLargeRaw, msg::kDefaultCaption, Icon::None, Buttons::Ok);
      return {};
    }
  }
  const int expand = work.SampleStep;
  const int group = work.RawLineGroup;
  const int n = int(values);
  const int64_t height = int64_t(n) * expand;
  const int64_t width = lines / group;

  CoreSection& section = model.CurSection();
  if (section.RadiographCount == 0) {
    section.RadiographCount = 1;
    model.Plot().CurRadiographIndex = 0;
  }
  RadiographDesc& rad = model.CurRadiograph();
  rad.Clear();
  if (width * height > maxPixels) {
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::OkCancel);
    return {};
  }
  std::vector<uint16_t> acc;
  try {
    AllocateDib(rad.Bitmap, int32_t(width), int32_t(height));
  } catch (const std::bad_alloc&) {
    rad.Clear();
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::OkCancel);
    return {};
  }
  try {
    AllocateSamples(rad.Samples, size_t(width * height));
    acc.assign(size_t(n) + 2, 0);
  } catch (const std::bad_alloc&) {
    rad.Clear();
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }

  // Columns are built a band at a time (the file's first group lands in the rightmost
  // column), so each bitmap row then receives whole cache lines.
  constexpr int64_t kBand = 32;
  std::vector<uint16_t> band;
  try {
    band.assign(size_t(height * kBand), 0);
  } catch (const std::bad_alloc&) {
    rad.Clear();
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  RawText raw(text);
  uint32_t minimum = 64000, maximum = 0;
  uint16_t* samples = rad.Samples.data();
  for (int64_t r0 = 0; r0 < width; r0 += kBand) {
    const int64_t columns = std::min(kBand, width - r0);
    for (int64_t b = 0; b < columns; ++b) {
      std::fill(acc.begin(), acc.begin() + n, uint16_t(0));
      for (int g = 0; g < group; ++g) raw.AddLine(acc.data(), acc.size());
      uint16_t* out = band.data() + (columns - 1 - b);
      switch (expand) {
        case 10: SpreadColumn<kBand>(acc.data(), n, 10, out, minimum, maximum); break;
        case 5: SpreadColumn<kBand>(acc.data(), n, 5, out, minimum, maximum); break;
        case 3: SpreadColumn<kBand>(acc.data(), n, 3, out, minimum, maximum); break;
        case 1: SpreadColumn<kBand>(acc.data(), n, 1, out, minimum, maximum); break;
        default: SpreadColumn<kBand>(acc.data(), n, expand, out, minimum, maximum); break;
      }
    }
    const int64_t firstColumn = width - r0 - columns;
    // A whole band copies a fixed 64 bytes a row, which the compiler turns into plain
    // vector moves instead of a library call per row.
    if (columns == kBand)
      for (int64_t y = 0; y < height; ++y)
        std::memcpy(samples + y * width + firstColumn, band.data() + y * kBand, size_t(kBand) * sizeof(uint16_t));
    else
      for (int64_t y = 0; y < height; ++y)
        std::memcpy(samples + y * width + firstColumn, band.data() + y * kBand, size_t(columns) * sizeof(uint16_t));
  }
  ApplyOffsetCorrection(rad, minimum, maximum);
  rad.Width = int32_t(width);
  rad.Height = int32_t(height);
  rad.HeightScale = 1.0f;
  return {1, true};
}

ReadOutcome ReadRawRadiograph(Model& model, Prompt& prompt, bool maxRes, const ZoomReset& resetZoom) {
  if (maxRes) SetResolution(model.Work(), 10, 1);
  else SetResolution(model.Work(), 5, 2);
  FileRequest request;
  request.Title = "Open Raw Radiograph file";
  request.Filters = {{"RAW files (*.raw)", "*.raw"}, {"All files (*.*)", "*.*"}};
  request.FilterIndex = 1;
  request.InitialName = "*.raw";
  request.InitialDir = model.Settings().SectionFolder;
  const FileChoice choice = prompt.OpenFile(request);
  if (!choice.Accepted) return {};
  RememberFolder(model, choice.Path);
  if (resetZoom) resetZoom();
  BusyScope busy(prompt);

  std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(choice.Path.c_str(), "rb"), &std::fclose);
  // A file that cannot be opened is passed over quietly; the command goes on.
  if (!file) return {1, false};
  std::vector<char> text;
  try {
    if (std::fseek(file.get(), 0, SEEK_END) != 0) return {1, false};
    const long size = std::ftell(file.get());
    if (size < 0 || std::fseek(file.get(), 0, SEEK_SET) != 0) return {1, false};
    text.resize(size_t(size));
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  } catch (const std::bad_alloc&) {
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  file.reset();
  return ParseRawRadiograph(model, prompt, std::string_view(text.data(), text.size()), maxRes);
}

}  // namespace sedra
