#include "import/raw_reader.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"
#include "model/row_bands.h"

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
//
// Most of the text goes 64 bytes at a time: one mask marks the bytes that end a count,
// and every count is then read straight from the eight bytes before its end.  The
// counts of a line do not depend on one another, so the processor reads many at once.
class RawText {
 public:
  RawText(std::string_view text, const char* from)
      : begin_(text.data()), p_(from), end_(text.data() + text.size()) {}

  const char* Position() const { return p_; }

  // Adds the counts of the next line to acc[0], acc[stride], ... acc[(n - 1) * stride];
  // counts after the n-th are read and dropped.
  void AddLine(uint16_t* acc, size_t n, size_t stride) {
    size_t index = 0;
    const char* start = p_;  // the first digit of the count being read
#if defined(__SSE2__)
    while (end_ - p_ >= 64) {
      for (uint64_t ends = NonDigits(p_); ends != 0; ends &= ends - 1) {
        const char* stop = p_ + __builtin_ctzll(ends);
        if (index < n) acc[index * stride] = uint16_t(acc[index * stride] + CountBefore(start, stop));
        ++index;
        start = stop + 1;
        if (*stop == '\r' || *stop == '\n') {
          p_ = start;
          if (p_ < end_ && *p_ == '\n') ++p_;
          return;
        }
      }
      p_ += 64;
    }
#endif
    // The last bytes of the text, one at a time from the count in hand.
    p_ = start;
    uint16_t number = 0;
    for (;;) {
      if (p_ >= end_) {
        if (index < n) acc[index * stride] = uint16_t(acc[index * stride] + number);
        return;
      }
      const char c = *p_++;
      if (unsigned(c - '0') < 10u) {
        number = uint16_t(number * 10 + (c - '0'));
        continue;
      }
      if (index < n) acc[index * stride] = uint16_t(acc[index * stride] + number);
      ++index;
      number = 0;
      if (c == '\r' || c == '\n') {
        if (p_ < end_ && *p_ == '\n') ++p_;
        return;
      }
    }
  }

 private:
#if defined(__SSE2__)
  // Bit i set: p[i] is not a digit.
  static uint64_t NonDigits(const char* p) {
    const __m128i zero = _mm_set1_epi8('0'), nine = _mm_set1_epi8(9);
    uint64_t mask = 0;
    for (int i = 0; i < 4; ++i) {
      const __m128i x = _mm_sub_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * i)), zero);
      const __m128i digit = _mm_cmpeq_epi8(_mm_min_epu8(x, nine), x);
      mask |= uint64_t(uint16_t(~_mm_movemask_epi8(digit))) << (16 * i);
    }
    return mask;
  }
#endif

  // The count written in the digits [start, stop), in 16-bit arithmetic.
  uint16_t CountBefore(const char* start, const char* stop) const {
    const ptrdiff_t length = stop - start;
    if (length == 0) return 0;
    if (length <= 8 && stop - begin_ >= 8) {
      // The eight bytes before `stop` hold the digits in their top `length` bytes; the
      // bytes below are cleared (before the '0's come off, so nothing borrows).
      uint64_t v;
      std::memcpy(&v, stop - 8, 8);
      const uint64_t keep = ~uint64_t(0) << (8 * (8 - length));
      uint64_t d = (v & keep) - (0x3030303030303030ULL & keep);
      // Digits combined pairwise into one value; its low 16 bits are what digit-by-digit
      // arithmetic in 16 bits gives.
      d = d * 10 + (d >> 8);
      d = (((d & 0x000000FF000000FFULL) * (100 + (1000000ULL << 32))) +
           (((d >> 16) & 0x000000FF000000FFULL) * (1 + (10000ULL << 32)))) >>
          32;
      return uint16_t(d);
    }
    uint16_t number = 0;
    for (const char* q = start; q < stop; ++q) number = uint16_t(number * 10 + (*q - '0'));
    return number;
  }

  const char* begin_;
  const char* p_;
  const char* end_;
};

// Columns are parsed a band at a time into counts stored slot-minor (count j of slot s
// at j * kBand + s).  Each count row then goes to the first bitmap row of its count,
// row j x E, as one run of kBand neighbouring samples; the rows in between are filled
// afterwards, row after row, by ExpandRows.
constexpr int kBand = 64;

// Fills rows j x E + 1 .. j x E + E - 1 for counts j in [first, last): each column
// steps linearly from its count (row j x E) towards the next one (row (j + 1) x E); the
// last count is repeated.  The step's division by the constant E is done in floating
// point, exact here because the quotient is never near enough a whole number to round
// to it.  The samples written are XORed with `flip`, which takes the scanner's offset
// off on the way.
template <int E>
void ExpandRows(uint16_t* samples, int n, int64_t width, int first, int last, uint16_t flip) {
  constexpr int64_t kChunk = 512;
  for (int j = first; j < last; ++j) {
    uint16_t* top = samples + int64_t(j) * E * width;
    const uint16_t* next = j + 1 < n ? top + E * width : top;
    for (int64_t x0 = 0; x0 < width; x0 += kChunk) {
      const int64_t count = std::min(kChunk, width - x0);
      // Steps and samples alike are kept modulo 2^16, as the stepping by subtraction gives.
      uint16_t step[kChunk];
      for (int64_t x = 0; x < count; ++x)
        step[x] = uint16_t(int(float(int(top[x0 + x]) - int(next[x0 + x])) / float(E)));
      for (int k = 1; k < E; ++k) {
        uint16_t* row = top + k * width + x0;
        const uint16_t times = uint16_t(k);
        for (int64_t x = 0; x < count; ++x) row[x] = uint16_t(uint16_t(top[x0 + x] - times * step[x]) ^ flip);
      }
    }
  }
}

using ExpandFunction = void (*)(uint16_t*, int, int64_t, int, int, uint16_t);

// One RAW image being parsed: its shape and where its samples go.
struct RawImage {
  std::string_view Text;
  int N, Group;
  int64_t Width;
  int Expand;
  uint16_t* Samples;
};

// What one run of ParseGroups saw: the smallest and largest count, and where it stopped.
struct GroupsParsed {
  GroupsParsed() {
    std::fill(Lo, Lo + kBand, uint16_t(65535));
    std::fill(Hi, Hi + kBand, uint16_t(0));
  }
  uint16_t Lo[kBand], Hi[kBand];
  const char* End = nullptr;
};

// Parses line groups [first, last) from `from`, the start of group `first` (a multiple
// of kBand), into their columns.  `counts` has room for n x kBand counts.
void ParseGroups(const RawImage& image, const char* from, int64_t first, int64_t last, uint16_t* counts,
                 GroupsParsed& seen) {
  RawText raw(image.Text, from);
  for (int64_t r0 = first; r0 < last; r0 += kBand) {
    const int columns = int(std::min<int64_t>(kBand, last - r0));
    std::fill(counts, counts + size_t(image.N) * kBand, uint16_t(0));
    // The file's first line group lands in the rightmost column.
    for (int b = 0; b < columns; ++b)
      for (int g = 0; g < image.Group; ++g) raw.AddLine(counts + (columns - 1 - b), size_t(image.N), kBand);
    uint16_t* out = image.Samples + (image.Width - r0 - columns);
    for (int j = 0; j < image.N; ++j) {
      const uint16_t* v = counts + size_t(j) * kBand;
      for (int c = 0; c < columns; ++c) {
        seen.Lo[c] = std::min(seen.Lo[c], v[c]);
        seen.Hi[c] = std::max(seen.Hi[c], v[c]);
      }
      std::memcpy(out + int64_t(j) * image.Expand * image.Width, v, size_t(columns) * sizeof(uint16_t));
    }
  }
  seen.End = raw.Position();
}

// The line feeds of a RAW text: how many, where the first is, and where every
// kMarkEvery-th ends, so that the thread of each band of columns finds its first line
// at once.  Counted while the file is read, a block at a time as it arrives.
class LineFeeds {
 public:
  static constexpr int64_t kMarkEvery = 256;

  // Counts the line feeds in text[from, to), going on from those counted before.
  void Count(const char* text, size_t from, size_t to) {
    for (const char* p = text + from; p < text + to;) {
      const void* hit = std::memchr(p, '\n', size_t(text + to - p));
      if (!hit) break;
      p = static_cast<const char*>(hit) + 1;
      if (++lines_ == 1) first_ = size_t(p - 1 - text);
      if (lines_ % kMarkEvery == 0) marks_.push_back({lines_, size_t(p - text)});
    }
  }

  // Takes on the count of the text that follows, counted on its own.
  void Append(const LineFeeds& next) {
    if (lines_ == 0) first_ = next.first_;
    for (const Mark& m : next.marks_) marks_.push_back({lines_ + m.Lines, m.After});
    lines_ += next.lines_;
  }

  int64_t Lines() const { return lines_; }
  size_t First() const { return first_; }

  // Where the text goes on after its `count`-th line feed (count <= Lines()).
  const char* After(std::string_view text, int64_t count) const {
    auto mark = std::upper_bound(marks_.begin(), marks_.end(), count,
                                 [](int64_t c, const Mark& m) { return c < m.Lines; });
    int64_t line = 0;
    const char* p = text.data();
    if (mark != marks_.begin()) {
      --mark;
      line = mark->Lines;
      p += mark->After;
    }
    for (; line < count; ++line)
      p = static_cast<const char*>(std::memchr(p, '\n', size_t(text.data() + text.size() - p))) + 1;
    return p;
  }

 private:
  struct Mark {
    int64_t Lines;  // line feeds up to here
    size_t After;   // offset just after the last of them
  };
  int64_t lines_ = 0;
  size_t first_ = 0;
  std::vector<Mark> marks_;
};

// Reads text[from, to) from `file`, which stands at `from`, a megabyte at a time,
// counting each block's line feeds while it is still in the cache.  Returns the bytes
// read, fewer if the file ended early.
size_t ReadCounting(FILE* file, ByteBuffer& text, size_t from, size_t to, LineFeeds& feeds) {
  constexpr size_t kBlock = size_t(1) << 20;
  size_t at = from;
  while (at < to) {
    const size_t read = std::fread(text.data() + at, 1, std::min(kBlock, to - at), file);
    if (read == 0) break;
    feeds.Count(reinterpret_cast<const char*>(text.data()), at, at + read);
    at += read;
  }
  return at - from;
}

ReadOutcome ParseIndexed(Model& model, Prompt& prompt, std::string_view text, const LineFeeds& feeds, bool maxRes,
                         int64_t memoryCeiling);

}  // namespace

ReadOutcome ParseRawRadiograph(Model& model, Prompt& prompt, std::string_view text, bool maxRes,
                               int64_t memoryCeiling) {
  LineFeeds feeds;
  try {
    feeds.Count(text.data(), 0, text.size());
  } catch (const std::bad_alloc&) {
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  return ParseIndexed(model, prompt, text, feeds, maxRes, memoryCeiling);
}

namespace {

// The image a RAW text makes: its values per line, resolution, size and parsing bands.
struct RawShape {
  int N = 0, Expand = 1, Group = 1, Bands = 1;
  int64_t Width = 0, Height = 0;
};

// Sets the resolution and steps it down until the image fits; false (after the
// message) when the text cannot make an image that fits in memory.
bool ChooseShape(Model& model, Prompt& prompt, std::string_view text, const LineFeeds& feeds, bool maxRes,
                 int64_t memoryCeiling, RawShape& shape) {
  WorkingBlock& work = model.Work();
  if (maxRes) SetResolution(work, 10, 1);
  else SetResolution(work, 5, 2);

  // Lines are counted by LF; the values used per line by the tabs of the first line.
  const int64_t lines = feeds.Lines();
  if (lines == 0) {
    prompt.Message(msg::kNoNewLines, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return false;
  }
  const int64_t values = std::count(text.data(), text.data() + feeds.First(), '\t');
  if (values == 0) {
    prompt.Message(msg::kNoTabs, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return false;
  }

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
      model.CurRadiograph().Clear();
      prompt.Message(msg::kTooLargeRaw, msg::kDefaultCaption, Icon::None, Buttons::Ok);
      return false;
    }
  }
  shape.N = int(values);
  shape.Expand = work.SampleStep;
  shape.Group = work.RawLineGroup;
  shape.Height = int64_t(shape.N) * shape.Expand;
  shape.Width = lines / shape.Group;
  // Refusals that need no image yet leave the radiograph shown as it was.  Too few lines
  // for one column would give an image of no width and an empty plot.
  if (shape.Width == 0) {
    prompt.Message(Format(msg::kTooFewRawLines, int(lines), shape.Group), msg::kDefaultCaption, Icon::None,
                   Buttons::Ok);
    return false;
  }
  // Columns are parsed in bands of line groups, one thread each for a large image.
  const int64_t units = (shape.Width + kBand - 1) / kBand;  // of kBand line groups
  shape.Bands = int(std::clamp<int64_t>(std::min<int64_t>(RowBandCount(shape.Width * shape.Height), units), 1,
                                        kMaxRowBands));
  // The text, the samples, the display bits and their screen copies, checked before
  // any of them is allocated.
  const int64_t workBytes = int64_t(text.size()) + int64_t(shape.Bands) * shape.N * kBand * int64_t(sizeof(uint16_t));
  if (!WithinMemoryCeiling(ImageMemory(shape.Width, shape.Height, 2), workBytes, memoryCeiling)) {
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::OkCancel);
    return false;
  }
  return true;
}

ReadOutcome ParseIndexed(Model& model, Prompt& prompt, std::string_view text, const LineFeeds& feeds, bool maxRes,
                         int64_t memoryCeiling) {
  RawShape shape;
  if (!ChooseShape(model, prompt, text, feeds, maxRes, memoryCeiling, shape)) return {};
  const int n = shape.N, expand = shape.Expand, group = shape.Group, bands = shape.Bands;
  const int64_t width = shape.Width, height = shape.Height;
  const int64_t units = (width + kBand - 1) / kBand;

  CoreSection& section = model.CurSection();
  const int countBefore = section.RadiographCount;
  const int indexBefore = model.Plot().CurRadiographIndex;
  if (section.RadiographCount == 0) {
    section.RadiographCount = 1;
    model.Plot().CurRadiographIndex = 0;
  }
  RadiographDesc& rad = model.CurRadiograph();
  rad.Clear();
  // Memory the system would not give: the radiograph is gone, and a section that had
  // none is left without one rather than with an empty one counted.
  auto refuse = [&](Buttons buttons) {
    rad.Clear();
    section.RadiographCount = countBefore;
    model.Plot().CurRadiographIndex = indexBefore;
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, buttons);
    return ReadOutcome{};
  };
  std::vector<uint16_t> counts;
  try {
    AllocateDib(rad.Bitmap, int32_t(width), int32_t(height));
  } catch (const std::bad_alloc&) {
    return refuse(Buttons::OkCancel);
  }
  try {
    AllocateSamples(rad.Samples, size_t(width * height));
    counts.assign(size_t(bands) * size_t(n) * kBand, 0);
  } catch (const std::bad_alloc&) {
    return refuse(Buttons::Ok);
  }
  const RawImage image{text, n, group, width, expand, rad.Samples.data()};

  // Each band starts after the LF that ends the line group before it, which is where
  // the band before ends as long as every LF ends exactly one line.  In a file with
  // CR-only or blank lines some band ends elsewhere; from there the rest is parsed once
  // more, on this thread.
  struct Band {
    int64_t First = 0;
    const char* From = nullptr;
    GroupsParsed Seen;
  } parts[kMaxRowBands];
  ForEachRowBand(bands, units, [&](int band, int64_t from, int64_t to) {
    Band& part = parts[band];
    part.First = from * kBand;
    part.From = band == 0 ? text.data() : feeds.After(text, part.First * group);
    ParseGroups(image, part.From, part.First, std::min(to * kBand, width),
                counts.data() + size_t(band) * size_t(n) * kBand, part.Seen);
  });
  for (int band = 1; band < bands; ++band)
    if (parts[band - 1].Seen.End != parts[band].From) {
      GroupsParsed rest;
      ParseGroups(image, parts[band - 1].Seen.End, parts[band].First, width, counts.data(), rest);
      parts[band].Seen = rest;
      for (int later = band + 1; later < bands; ++later) parts[later].Seen = GroupsParsed{};
      break;
    }
  uint16_t lo = 65535, hi = 0;
  for (const Band& part : parts) {
    lo = std::min(lo, *std::min_element(part.Seen.Lo, part.Seen.Lo + kBand));
    hi = std::max(hi, *std::max_element(part.Seen.Hi, part.Seen.Hi + kBand));
  }
  const uint32_t minimum = std::min<uint32_t>(64000, lo);
  const uint32_t maximum = hi;
  // The rows between the counts, in bands on several threads for a large image.  The
  // offset test needs only the counts, so these rows are written already corrected, and
  // the count rows are put right after.
  const bool offset = minimum > 32768;
  const uint16_t flip = offset ? kOffsetBit : 0;
  ExpandFunction expandRows = nullptr;
  switch (expand) {
    case 10: expandRows = ExpandRows<10>; break;
    case 5: expandRows = ExpandRows<5>; break;
    case 3: expandRows = ExpandRows<3>; break;
    default: break;  // one row per count: nothing in between
  }
  if (expandRows)
    ForEachRowBand(RowBandCount(width * height), n, [&](int, int64_t from, int64_t to) {
      expandRows(rad.Samples.data(), n, width, int(from), int(to), flip);
    });
  if (offset)
    for (int64_t j = 0; j < n; ++j)
      for (uint16_t *s = rad.Samples.data() + j * expand * width, *end = s + width; s < end; ++s)
        *s = uint16_t(*s ^ kOffsetBit);
  ApplyOffsetCorrection(rad, minimum, maximum, offset);
  rad.Width = int32_t(width);
  rad.Height = int32_t(height);
  rad.HeightScale = 1.0f;
  return {1, true};
}

}  // namespace

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

  return ReadRawFile(model, prompt, choice.Path, maxRes);
}

ReadOutcome ReadRawFile(Model& model, Prompt& prompt, const std::string& path, bool maxRes) {
  std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  // A file that cannot be opened is passed over quietly; the command goes on.
  if (!file) return {1, false};
  ByteBuffer text;
  LineFeeds feeds;
  try {
    if (std::fseek(file.get(), 0, SEEK_END) != 0) return {1, false};
    const long size = std::ftell(file.get());
    if (size < 0 || std::fseek(file.get(), 0, SEEK_SET) != 0) return {1, false};
    // The text alone beyond the ceiling: no image of it could be kept.
    if (!WithinMemoryCeiling(0, size, kImageMemoryCeiling)) throw std::bad_alloc();
    AllocateBytes(text, size_t(size));
    // A large file is read in bands on several threads, each through a handle of its
    // own, with its line feeds counted on the way.
    struct Piece {
      size_t Begin = 0, End = 0, Read = 0;
      LineFeeds Feeds;
      bool NoMemory = false;
    } pieces[kMaxRowBands];
    ForEachRowBand(RowBandCount(size), size, [&](int band, int64_t from, int64_t to) {
      Piece& piece = pieces[band];
      piece.Begin = size_t(from);
      piece.End = size_t(to);
      std::unique_ptr<FILE, int (*)(FILE*)> own(band == 0 ? nullptr : std::fopen(path.c_str(), "rb"), &std::fclose);
      FILE* f = band == 0 ? file.get() : own.get();
      if (!f || std::fseek(f, long(from), SEEK_SET) != 0) return;
      try {
        piece.Read = ReadCounting(f, text, piece.Begin, piece.End, piece.Feeds);
      } catch (const std::bad_alloc&) {
        piece.NoMemory = true;
      }
    });
    size_t got = 0;
    for (const Piece& piece : pieces) {
      if (piece.NoMemory) throw std::bad_alloc();
      if (piece.End == piece.Begin) break;  // no more bands
      feeds.Append(piece.Feeds);
      got += piece.Read;
      if (piece.Read < piece.End - piece.Begin) {
        // The band stopped short: it had no handle, or the file shrank while it was
        // read.  The rest is read here, from where it stopped, as far as it goes.
        if (std::fseek(file.get(), long(got), SEEK_SET) == 0) {
          LineFeeds rest;
          got += ReadCounting(file.get(), text, got, text.size(), rest);
          feeds.Append(rest);
        }
        break;
      }
    }
    text.resize(got);
  } catch (const std::bad_alloc&) {
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  file.reset();
  return ParseIndexed(model, prompt, std::string_view(reinterpret_cast<const char*>(text.data()), text.size()), feeds,
                      maxRes, kImageMemoryCeiling);
}

}  // namespace sedra
