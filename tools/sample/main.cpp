// make-sample-core: writes a realistic core-section folder (document.txt, optical.tif,
// radiograph.tif, radiograph.raw) for tests, benchmarks and demonstrations.  The same
// options and seed always give the same bytes.

#include <tiffio.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace {

const char* const kUsage =
    "usage: make-sample-core OUT_FOLDER [options]\n"
    "  --length N            radiograph pixels along the core (1500)\n"
    "  --width N             radiograph pixels across the core (200)\n"
    "  --optical-length N    optical pixels along the core (1550)\n"
    "  --optical-width N     optical pixels across the core (240)\n"
    "  --radiograph-bits B   8 or 16 (16)\n"
    "  --optical-bits B      8 or 16 (8)\n"
    "  --offset | --no-offset  radiograph counts written with 32768 added (on)\n"
    "  --portrait-optical    optical image with the core axis down its rows\n"
    "  --raw-values N        counts per RAW line (300; 0 writes no RAW file)\n"
    "  --raw-lines N         RAW lines (100)\n"
    "  --raw-mb N            RAW file of about N megabytes (sets the line count)\n"
    "  --raw-offset          RAW counts with 32768 added\n"
    "  --compress C          none, lzw, deflate or packbits (none)\n"
    "  --big-endian          TIFFs in big-endian byte order\n"
    "  --tile N              tiled TIFFs with N x N tiles (N a multiple of 16)\n"
    "  --rows-per-strip N    rows per strip of striped TIFFs (16)\n"
    "  --cr-only             document.txt and RAW lines end in CR alone\n"
    "  --missing FILE        leave FILE out (document.txt, optical.tif, radiograph.tif,\n"
    "                        radiograph.raw); may be repeated\n"
    "  --section N           section number (1)\n"
    "  --sections N          a whole core: N section folders OUT_FOLDER/section-01 ...,\n"
    "                        numbered from --section, each starting where the last ends\n"
    "  --start MM            start coordinate of the scan in mm (100)\n"
    "  --step UM             scan step in micrometres (200)\n"
    "  --seed N              random seed (1)\n";

struct Options {
  std::filesystem::path Folder;
  int Length = 1500, Width = 200;
  int OpticalLength = 1550, OpticalWidth = 240;
  int RadiographBits = 16, OpticalBits = 8;
  bool Offset = true, PortraitOptical = false;
  int RawValues = 300, RawLines = 100;
  double RawMegabytes = 0;
  bool RawOffset = false;
  uint16_t Compression = COMPRESSION_NONE;
  bool BigEndian = false;
  int Tile = 0, RowsPerStrip = 16;
  bool CrOnly = false;
  std::set<std::string> Missing;
  int Section = 1;
  int Sections = 1;  // more than one: a whole core of section folders
  double Start = 100;
  int Step = 200;
  uint64_t Seed = 1;
};

// Deterministic, fast and independent of the standard library's generators.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15ULL + 0x632BE59BD9B4E5ULL) {}
  uint64_t Next() {
    uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }
  double Uniform() { return double(Next() >> 11) * (1.0 / 9007199254740992.0); }
  int Range(int lo, int hi) { return lo + int(Next() % uint64_t(hi - lo + 1)); }

 private:
  uint64_t state_;
};

// The core: a stack of sediment layers along its length, in millimetres.
struct Layer {
  double Top;         // mm from the section start
  double Density;     // 0..1: denser layers let fewer X-rays through
  double R, G, B;     // colour 0..255
  double Lamination;  // strength of the fine banding
};

std::vector<Layer> MakeLayers(Random& rnd, double lengthMm) {
  static const double kColours[][3] = {{112, 104, 78}, {86, 84, 76}, {134, 112, 82}, {70, 66, 58},
                                       {150, 140, 118}, {98, 90, 64}, {122, 96, 70}, {60, 58, 54}};
  std::vector<Layer> layers;
  double top = 0;
  while (top < lengthMm + 20) {
    Layer l;
    l.Top = top;
    l.Density = 0.25 + 0.6 * rnd.Uniform();
    const double* c = kColours[rnd.Range(0, 7)];
    const double shade = 0.85 + 0.3 * rnd.Uniform();
    l.R = c[0] * shade;
    l.G = c[1] * shade;
    l.B = c[2] * shade;
    l.Lamination = rnd.Uniform() < 0.4 ? 0.08 + 0.1 * rnd.Uniform() : 0.02;
    layers.push_back(l);
    top += 2 + 25 * rnd.Uniform() * rnd.Uniform();
  }
  return layers;
}

const Layer& LayerAt(const std::vector<Layer>& layers, double mm) {
  size_t lo = 0, hi = layers.size();
  while (hi - lo > 1) {
    const size_t mid = (lo + hi) / 2;
    if (layers[mid].Top <= mm) lo = mid;
    else hi = mid;
  }
  return layers[lo];
}

// Transmitted counts along the core for positions 0..n-1 spanning lengthMm.
std::vector<double> DensityProfile(const std::vector<Layer>& layers, int n, double lengthMm, double shiftMm) {
  std::vector<double> out(size_t(n > 0 ? n : 0));
  for (int p = 0; p < n; ++p) {
    const double mm = shiftMm + lengthMm * (p + 0.5) / n;
    const Layer& l = LayerAt(layers, mm < 0 ? 0 : mm);
    out[size_t(p)] = l.Density + l.Lamination * std::sin(mm * 9.0) + 0.03 * std::sin(mm * 0.7);
  }
  return out;
}

// The core is a half cylinder: thickest in the middle, so fewest counts there.
double AcrossFactor(int q, int n) {
  const double x = n > 1 ? 2.0 * q / (n - 1) - 1.0 : 0.0;
  return 0.75 + 0.25 * x * x;
}

uint32_t Counts(double density, double across, double noise) {
  double v = 30000.0 * (1.0 - 0.7 * density) * across + noise;
  if (v < 200) v = 200;
  if (v > 32000) v = 32000;
  return uint32_t(v);
}

bool Fail(const std::string& what) {
  std::fprintf(stderr, "make-sample-core: %s\n", what.c_str());
  return false;
}

TIFF* OpenTiff(const Options& o, const std::filesystem::path& path, uint32_t w, uint32_t h, uint16_t spp,
               uint16_t bits) {
  TIFF* tif = TIFFOpen(path.string().c_str(), o.BigEndian ? "wb" : "wl");
  if (!tif) return nullptr;
  TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, w);
  TIFFSetField(tif, TIFFTAG_IMAGELENGTH, h);
  TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, spp);
  TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, bits);
  TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, spp == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
  TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tif, TIFFTAG_COMPRESSION, o.Compression);
  if (o.Tile > 0) {
    TIFFSetField(tif, TIFFTAG_TILEWIDTH, uint32_t(o.Tile));
    TIFFSetField(tif, TIFFTAG_TILELENGTH, uint32_t(o.Tile));
  } else {
    TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, uint32_t(o.RowsPerStrip));
  }
  return tif;
}

// Writes an image given row by row (rows of w * spp samples of `bits`), as strips or tiles.
bool WriteImage(const Options& o, TIFF* tif, uint32_t w, uint32_t h, int bytesPerPixel,
                const std::function<void(uint32_t row, uint8_t* out)>& makeRow) {
  bool ok = true;
  if (o.Tile > 0) {
    const uint32_t t = uint32_t(o.Tile);
    std::vector<uint8_t> band(size_t(w) * bytesPerPixel * t);
    std::vector<uint8_t> tile(size_t(t) * t * bytesPerPixel);
    for (uint32_t y0 = 0; y0 < h && ok; y0 += t) {
      std::fill(band.begin(), band.end(), 0);
      for (uint32_t i = 0; i < t && y0 + i < h; ++i) makeRow(y0 + i, band.data() + size_t(i) * w * bytesPerPixel);
      for (uint32_t x0 = 0; x0 < w && ok; x0 += t) {
        std::fill(tile.begin(), tile.end(), 0);
        for (uint32_t i = 0; i < t; ++i) {
          const uint32_t cols = std::min(t, w - x0);
          std::memcpy(tile.data() + size_t(i) * t * bytesPerPixel,
                      band.data() + (size_t(i) * w + x0) * bytesPerPixel, size_t(cols) * bytesPerPixel);
        }
        ok = TIFFWriteTile(tif, tile.data(), x0, y0, 0, 0) >= 0;
      }
    }
  } else {
    std::vector<uint8_t> row(size_t(w) * bytesPerPixel);
    for (uint32_t r = 0; r < h && ok; ++r) {
      makeRow(r, row.data());
      ok = TIFFWriteScanline(tif, row.data(), r, 0) >= 0;
    }
  }
  TIFFClose(tif);
  return ok;
}

bool WriteRadiograph(const Options& o, const std::vector<Layer>& layers, double lengthMm, Random& rnd) {
  // Display orientation is the TIFF turned a quarter anticlockwise: TIFF columns run
  // along the core from its bottom, TIFF rows across it.
  const uint32_t w = uint32_t(o.Length), h = uint32_t(o.Width);
  const std::vector<double> along = DensityProfile(layers, o.Length, lengthMm, 0);
  const int bytes = o.RadiographBits / 8;
  TIFF* tif = OpenTiff(o, o.Folder / "radiograph.tif", w, h, 1, uint16_t(o.RadiographBits));
  if (!tif) return Fail("cannot write radiograph.tif");
  return WriteImage(o, tif, w, h, bytes, [&](uint32_t r, uint8_t* out) {
    const double across = AcrossFactor(int(r), int(h));
    for (uint32_t c = 0; c < w; ++c) {
      const double noise = (rnd.Uniform() - 0.5) * 600;
      uint32_t v = Counts(along[size_t(w - 1 - c)], across, noise);
      if (bytes == 1) {
        out[c] = uint8_t(v >> 7);
      } else {
        if (o.Offset) v += 32768;
        const uint16_t s = uint16_t(v);
        std::memcpy(out + 2 * size_t(c), &s, 2);
      }
    }
  }) ? true : Fail("libtiff could not write radiograph.tif");
}

bool WriteOptical(const Options& o, const std::vector<Layer>& layers, double lengthMm, Random& rnd) {
  // The optical image overhangs the radiograph by 5 mm at each end.
  const std::vector<double> along = DensityProfile(layers, o.OpticalLength, lengthMm + 10, -5);
  std::vector<const Layer*> layerOf(size_t(o.OpticalLength));
  for (int p = 0; p < o.OpticalLength; ++p)
    layerOf[size_t(p)] = &LayerAt(layers, std::max(0.0, -5 + (lengthMm + 10) * (p + 0.5) / o.OpticalLength));
  const bool portrait = o.PortraitOptical;
  const uint32_t w = uint32_t(portrait ? o.OpticalWidth : o.OpticalLength);
  const uint32_t h = uint32_t(portrait ? o.OpticalLength : o.OpticalWidth);
  const int sampleBytes = o.OpticalBits / 8;
  TIFF* tif = OpenTiff(o, o.Folder / "optical.tif", w, h, 3, uint16_t(o.OpticalBits));
  if (!tif) return Fail("cannot write optical.tif");
  return WriteImage(o, tif, w, h, 3 * sampleBytes, [&](uint32_t r, uint8_t* out) {
    for (uint32_t c = 0; c < w; ++c) {
      // Landscape: columns run along the core from its bottom; portrait: rows from its top.
      const int p = portrait ? int(r) : int(w - 1 - c);
      const int q = portrait ? int(c) : int(r);
      const Layer& l = *layerOf[size_t(p)];
      const double texture = 1.0 + 0.12 * (along[size_t(p)] - l.Density) + (rnd.Uniform() - 0.5) * 0.08;
      const double edge = 0.85 + 0.15 * std::sin(3.14159 * (q + 0.5) / o.OpticalWidth);
      const double rgb[3] = {l.R * texture * edge, l.G * texture * edge, l.B * texture * edge};
      for (int k = 0; k < 3; ++k) {
        const double v = std::fmin(std::fmax(rgb[k], 0), 255);
        if (sampleBytes == 1) {
          out[3 * c + k] = uint8_t(v);
        } else {
          const uint16_t s = uint16_t(v * 257);
          std::memcpy(out + 2 * (3 * size_t(c) + k), &s, 2);
        }
      }
    }
  }) ? true : Fail("libtiff could not write optical.tif");
}

bool WriteRaw(const Options& o, const std::vector<Layer>& layers, double lengthMm, Random& rnd) {
  const int n = o.RawValues;
  int lines = o.RawLines;
  if (o.RawMegabytes > 0) lines = int(o.RawMegabytes * 1e6 / (n * 6.0 + 2)) + 1;
  const std::vector<double> along = DensityProfile(layers, n, lengthMm, 0);
  FILE* f = std::fopen((o.Folder / "radiograph.raw").string().c_str(), "wb");
  if (!f) return Fail("cannot write radiograph.raw");
  std::string line;
  for (int l = 0; l < lines; ++l) {
    line.clear();
    const double across = AcrossFactor(lines - 1 - l, lines);
    char number[16];
    for (int j = 0; j < n; ++j) {
      uint32_t v = Counts(along[size_t(j)], across, (rnd.Uniform() - 0.5) * 600);
      if (o.RawOffset) v += 32768;
      const int len = std::snprintf(number, sizeof number, "%u\t", unsigned(v));
      line.append(number, size_t(len));
    }
    line += o.CrOnly ? "\r" : "\r\n";
    if (std::fwrite(line.data(), 1, line.size(), f) != line.size()) {
      std::fclose(f);
      return Fail("cannot write radiograph.raw");
    }
  }
  return std::fclose(f) == 0 ? true : Fail("cannot write radiograph.raw");
}

bool WriteDocument(const Options& o, double lengthMm) {
  const char* eol = o.CrOnly ? "\r" : "\r\n";
  const double end = o.Start + lengthMm;
  char text[4096];
  const int len = std::snprintf(
      text, sizeof text,
      "Station\tCore\tSection\tSample ID%s"
      "Kingsport Bay\tKB-07\t%d\tKB07-%02d%s"
      "Year\tMonth\tDay%s"
      "2024 3 %d%s"
      "Tube Voltage\t30\tkV\tset%s"
      "Tube Current\t25\tmA\tset%s"
      "Exposure\t500\tms\tset%s"
      "Line camera\t1\ton\tset%s"
      "Step size\t%d\tmicrons\tset%s"
      "XRF exposure\t10\ts\tset%s"
      "XRF voltage\t30\tkV\t20%s"
      "Tube\tMo\tfine focus%s"
      "Start coordinate\t%.1f\tEnd coordinate\t%.1f%s"
      "Optical Start\t%.1f\tOptical End\t%.1f%s",
      eol, o.Section, o.Section, eol, eol, 1 + (o.Section % 28), eol, eol, eol, eol, eol, o.Step, eol, eol, eol, eol,
      o.Start, end, eol, o.Start - 5, end + 5, eol);
  FILE* f = std::fopen((o.Folder / "document.txt").string().c_str(), "wb");
  if (!f) return Fail("cannot write document.txt");
  const bool ok = std::fwrite(text, 1, size_t(len), f) == size_t(len);
  return std::fclose(f) == 0 && ok ? true : Fail("cannot write document.txt");
}

bool ParseInt(const char* s, int lo, int hi, int& out) {
  char* end = nullptr;
  const long v = std::strtol(s, &end, 10);
  if (!*s || *end || v < lo || v > hi) return false;
  out = int(v);
  return true;
}

bool ParseArgs(int argc, char** argv, Options& o) {
  if (argc < 2 || argv[1][0] == '-') return false;
  o.Folder = argv[1];
  for (int i = 2; i < argc; ++i) {
    const std::string a = argv[i];
    const char* v = i + 1 < argc ? argv[i + 1] : nullptr;
    auto num = [&](int lo, int hi, int& out) {
      if (!v || !ParseInt(v, lo, hi, out)) return false;
      ++i;
      return true;
    };
    bool ok = true;
    if (a == "--length") ok = num(1, 1 << 20, o.Length);
    else if (a == "--width") ok = num(1, 1 << 20, o.Width);
    else if (a == "--optical-length") ok = num(1, 1 << 20, o.OpticalLength);
    else if (a == "--optical-width") ok = num(1, 1 << 20, o.OpticalWidth);
    else if (a == "--radiograph-bits") ok = num(8, 16, o.RadiographBits) && (o.RadiographBits == 8 || o.RadiographBits == 16);
    else if (a == "--optical-bits") ok = num(8, 16, o.OpticalBits) && (o.OpticalBits == 8 || o.OpticalBits == 16);
    else if (a == "--offset") o.Offset = true;
    else if (a == "--no-offset") o.Offset = false;
    else if (a == "--portrait-optical") o.PortraitOptical = true;
    else if (a == "--raw-values") ok = num(0, 1 << 20, o.RawValues);
    else if (a == "--raw-lines") ok = num(1, 1 << 24, o.RawLines);
    else if (a == "--raw-mb") {
      int mb = 0;
      ok = num(1, 4096, mb);
      o.RawMegabytes = mb;
    } else if (a == "--raw-offset") o.RawOffset = true;
    else if (a == "--compress" && v) {
      const std::string c = argv[++i];
      if (c == "none") o.Compression = COMPRESSION_NONE;
      else if (c == "lzw") o.Compression = COMPRESSION_LZW;
      else if (c == "deflate") o.Compression = COMPRESSION_ADOBE_DEFLATE;
      else if (c == "packbits") o.Compression = COMPRESSION_PACKBITS;
      else ok = false;
    } else if (a == "--big-endian") o.BigEndian = true;
    else if (a == "--tile") ok = num(16, 4096, o.Tile) && o.Tile % 16 == 0;
    else if (a == "--rows-per-strip") ok = num(1, 1 << 20, o.RowsPerStrip);
    else if (a == "--cr-only") o.CrOnly = true;
    else if (a == "--missing" && v) o.Missing.insert(argv[++i]);
    else if (a == "--section") ok = num(1, 12, o.Section);
    else if (a == "--sections") ok = num(1, 12, o.Sections);
    else if (a == "--start") {
      int mm = 0;
      ok = num(-100000, 100000, mm);
      o.Start = mm;
    } else if (a == "--step") ok = num(1, 100000, o.Step);
    else if (a == "--seed") {
      int s = 0;
      ok = num(0, 1 << 30, s);
      o.Seed = uint64_t(s);
    } else ok = false;
    if (!ok) {
      std::fprintf(stderr, "make-sample-core: bad option %s\n", a.c_str());
      return false;
    }
  }
  return true;
}

}  // namespace

bool WriteSection(const Options& o);

// The sections of one core lie end to end: each starts at the depth where the one
// before ends, and each has its own noise.
bool WriteCore(const Options& core) {
  const double lengthMm = core.Length * core.Step / 1000.0;
  for (int k = 0; k < core.Sections; ++k) {
    Options o = core;
    char name[32];
    std::snprintf(name, sizeof name, "section-%02d", k + 1);
    o.Folder = core.Folder / name;
    o.Section = core.Section + k;
    o.Start = core.Start + k * lengthMm;
    o.Seed = core.Seed + 1000 * uint64_t(k);
    if (!WriteSection(o)) return false;
  }
  return true;
}

bool WriteSection(const Options& o) {
  std::error_code ec;
  std::filesystem::create_directories(o.Folder, ec);
  if (ec) return Fail("cannot create " + o.Folder.string());
  TIFFSetWarningHandler(nullptr);

  Random rnd(o.Seed);
  const double lengthMm = o.Length * o.Step / 1000.0;
  const std::vector<Layer> layers = MakeLayers(rnd, lengthMm + 10);
  bool ok = true;
  // Each file draws its noise from its own stream, so leaving one out changes no other.
  if (!o.Missing.count("document.txt")) ok = WriteDocument(o, lengthMm) && ok;
  if (!o.Missing.count("radiograph.tif")) {
    Random r(o.Seed + 101);
    ok = WriteRadiograph(o, layers, lengthMm, r) && ok;
  }
  if (!o.Missing.count("optical.tif")) {
    Random r(o.Seed + 202);
    ok = WriteOptical(o, layers, lengthMm, r) && ok;
  }
  if (o.RawValues > 0 && !o.Missing.count("radiograph.raw")) {
    Random r(o.Seed + 303);
    ok = WriteRaw(o, layers, lengthMm, r) && ok;
  }
  if (!ok) return false;
  std::printf("%s\n", o.Folder.string().c_str());
  return true;
}

int main(int argc, char** argv) {
  Options o;
  if (!ParseArgs(argc, argv, o)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  if (o.Sections > 1) return WriteCore(o) ? 0 : 1;
  return WriteSection(o) ? 0 : 1;
}
