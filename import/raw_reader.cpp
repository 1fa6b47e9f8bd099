#include "import/raw_reader.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// Below this much text a second thread costs more than it saves.
constexpr size_t kSplitBytes = size_t(4) << 20;

// The line feeds of a RAW text: how many, where the first is, and where every
// kMarkEvery-th ends, so that the second half's thread finds its first line at once.
// Counted while the file is read, a block at a time as it arrives.
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
                         int64_t maxPixels);

}  // namespace

ReadOutcome ParseRawRadiograph(Model& model, Prompt& prompt, std::string_view text, bool maxRes, int64_t maxPixels) {
  LineFeeds feeds;
  try {
    feeds.Count(text.data(), 0, text.size());
  } catch (const std::bad_alloc&) {
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  return ParseIndexed(model, prompt, text, feeds, maxRes, maxPixels);
}

namespace {

ReadOutcome ParseIndexed(Model& model, Prompt& prompt, std::string_view text, const LineFeeds& feeds, bool maxRes,
                         int64_t maxPixels) {
  WorkingBlock& work = model.Work();
  if (maxRes) SetResolution(work, 10, 1);
  else SetResolution(work, 5, 2);

  // Lines are counted by LF; the values used per line by the tabs of the first line.
  const int64_t lines = feeds.Lines();
  if (lines == 0) {
    prompt.Message(msg::kNoNewLines, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  const int64_t values = std::count(text.data(), text.data() + feeds.First(), '\t');
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
  std::vector<uint16_t> counts;
  try {
    AllocateDib(rad.Bitmap, int32_t(width), int32_t(height));
  } catch (const std::bad_alloc&) {
    rad.Clear();
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::OkCancel);
    return {};
  }
  try {
    AllocateSamples(rad.Samples, size_t(width * height));
    counts.assign(size_t(n) * kBand, 0);
  } catch (const std::bad_alloc&) {
    rad.Clear();
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  const RawImage image{text, n, group, width, expand, rad.Samples.data()};

  // A large file is parsed in two halves at once.  The second half starts after the
  // LF that ends its first line group, which is where the first half ends as long as
  // every LF ends exactly one line.  In a file with CR-only or blank lines the first
  // half ends elsewhere; then it parses on over the second half's columns itself.
  const bool twoThreads = text.size() >= kSplitBytes && std::thread::hardware_concurrency() > 1;
  const int64_t split = twoThreads ? kBand * (width / kBand / 2) : 0;
  GroupsParsed front, back;
  bool parsed = false;
  if (split > 0) {
    std::vector<uint16_t> backCounts;
    const char* backFrom = nullptr;
    std::thread second;
    try {
      backCounts.assign(counts.size(), 0);
      second = std::thread([&] {
        const char* from = feeds.After(text, split * group);
        backFrom = from;
        ParseGroups(image, from, split, width, backCounts.data(), back);
      });
    } catch (const std::exception&) {
      // No second thread to be had, or no room for its counts: one thread does it all.
    }
    if (second.joinable()) {
      ParseGroups(image, text.data(), 0, split, counts.data(), front);
      second.join();
      if (front.End != backFrom) {
        back = GroupsParsed{};
        ParseGroups(image, front.End, split, width, counts.data(), back);
      }
      parsed = true;
    }
  }
  if (!parsed) ParseGroups(image, text.data(), 0, width, counts.data(), front);
  const uint32_t minimum =
      std::min<uint32_t>(64000, std::min(*std::min_element(front.Lo, front.Lo + kBand),
                                         *std::min_element(back.Lo, back.Lo + kBand)));
  const uint32_t maximum =
      std::max(*std::max_element(front.Hi, front.Hi + kBand), *std::max_element(back.Hi, back.Hi + kBand));

  // The rows between the counts, in two halves at once for a large file.  The offset
  // test needs only the counts, so the rows are written already corrected, and the
  // count rows are put right after.
  const bool offset = minimum > 32768;
  const uint16_t flip = offset ? kOffsetBit : 0;
  ExpandFunction expandRows = nullptr;
  switch (expand) {
    case 10: expandRows = ExpandRows<10>; break;
    case 5: expandRows = ExpandRows<5>; break;
    case 3: expandRows = ExpandRows<3>; break;
    default: break;  // one row per count: nothing in between
  }
  if (expandRows) {
    std::thread second;
    const int half = twoThreads ? n / 2 : 0;
    if (half > 0) {
      try {
        second = std::thread(expandRows, rad.Samples.data(), n, width, half, n, flip);
      } catch (const std::exception&) {
        // One thread does all the rows.
      }
    }
    expandRows(rad.Samples.data(), n, width, 0, second.joinable() ? half : n, flip);
    if (second.joinable()) second.join();
  }
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
    AllocateBytes(text, size_t(size));
    // A large file is read in two halves at once, through a second handle.
    const size_t half = text.size() >= kSplitBytes ? text.size() / 2 : text.size();
    std::unique_ptr<FILE, int (*)(FILE*)> other(nullptr, &std::fclose);
    if (half < text.size() && std::thread::hardware_concurrency() > 1) {
      other.reset(std::fopen(path.c_str(), "rb"));
      if (other && std::fseek(other.get(), long(half), SEEK_SET) != 0) other.reset();
    }
    LineFeeds back;
    size_t backRead = 0;
    bool backFailed = false;
    std::thread second;
    if (other) {
      try {
        second = std::thread([&] {
          try {
            backRead = ReadCounting(other.get(), text, half, text.size(), back);
          } catch (const std::bad_alloc&) {
            backFailed = true;
          }
        });
      } catch (const std::exception&) {
        // No second thread: this one reads it all.
      }
    }
    const bool halves = second.joinable();
    size_t got = 0;
    bool frontFailed = false;
    try {
      got = ReadCounting(file.get(), text, 0, halves ? half : text.size(), feeds);
    } catch (const std::bad_alloc&) {
      frontFailed = true;  // told once the second thread is done
    }
    if (halves) second.join();
    if (frontFailed || backFailed) throw std::bad_alloc();
    // A file that shrank while it was read ends where its first half stopped short.
    if (halves && got == half) {
      feeds.Append(back);
      got += backRead;
    }
    text.resize(got);
  } catch (const std::bad_alloc&) {
    prompt.Message(msg::kCouldNotAllocate, msg::kDefaultCaption, Icon::None, Buttons::Ok);
    return {};
  }
  file.reset();
  return ParseIndexed(model, prompt, std::string_view(reinterpret_cast<const char*>(text.data()), text.size()), feeds,
                      maxRes, kMaxImagePixels);
}

}  // namespace sedra
