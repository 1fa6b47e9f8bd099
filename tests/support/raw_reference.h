#pragma once
// A plain character-by-character RAW parse, written for clarity only.  The reader's own
// parser works a block of bytes and a band of columns at a time; tests and the fuzz
// target compare it with this one.

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace sedra::test {

struct RawReference {
  std::vector<uint16_t> Samples;  // width x (n x expand), row-major
  int32_t MaxValue = 0;
};

// `n` counts used per line, `expand` rows per count, `group` lines per column, `width`
// columns; the file's first line group lands in the rightmost column.
inline RawReference ReferenceRawParse(std::string_view text, int n, int expand, int group, int64_t width) {
  const int64_t height = int64_t(n) * expand;
  RawReference r;
  r.Samples.assign(size_t(width * height), 0);
  size_t p = 0;
  uint32_t minimum = 64000, maximum = 0;
  std::vector<uint16_t> acc(size_t(n) + 2);
  for (int64_t column = 0; column < width; ++column) {
    std::fill(acc.begin(), acc.end(), uint16_t(0));
    for (int g = 0; g < group; ++g) {
      size_t index = 0;
      uint16_t number = 0;
      for (;;) {
        if (p >= text.size()) {
          // The text ends: the last number counts, and the line is over.
          if (index < acc.size()) acc[index] = uint16_t(acc[index] + number);
          break;
        }
        const char c = text[p++];
        if (c >= '0' && c <= '9') {
          number = uint16_t(number * 10 + (c - '0'));
          continue;
        }
        if (index < acc.size()) acc[index] = uint16_t(acc[index] + number);
        ++index;
        number = 0;
        if (c == '\r' || c == '\n') {
          if (p < text.size() && text[p] == '\n') ++p;
          break;
        }
      }
    }
    for (int j = 0; j < n; ++j) {
      int v = acc[size_t(j)];
      minimum = std::min(minimum, uint32_t(v));
      maximum = std::max(maximum, uint32_t(v));
      const int d = j < n - 1 ? (v - int(acc[size_t(j) + 1])) / expand : 0;
      for (int k = 0; k < expand; ++k) {
        r.Samples[size_t((int64_t(j) * expand + k) * width + (width - 1 - column))] = uint16_t(v);
        v -= d;
      }
    }
  }
  if (minimum > 32768) {
    for (uint16_t& s : r.Samples) s = uint16_t(s - 32768);
    maximum -= 32768;
  }
  r.MaxValue = int32_t(std::min(maximum, 65535u));
  return r;
}

}  // namespace sedra::test
