// The TIFF reader: orientation, reduction, odd sizes, the offset rule, 8- and 16-bit
// colour, the file formats libtiff opens for us, the file name and add mode.  The
// refusals are in bad_files_test.cpp.

#include "import/tiff_reader.h"

#include <algorithm>
#include <functional>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/messages.h"

namespace sedra {
namespace {

using test::WriteTiff;

// Read chooses the file in the open dialog and reads it.
class TiffReader : public test::ReaderTest {
 protected:
  ReadOutcome Read(const std::filesystem::path& path, bool radiograph, bool add = false,
                   const RadiographPlaceChooser& choose = {}) {
    prompt.ChooseFile(path.string());
    return ReadTiffImage(model, prompt, radiograph, add, choose);
  }
};

// TIFF row r, column c lands in bitmap row Width - 1 - c, column r.  Larger radiographs
// are turned in blocks, with the rows and columns the blocks leave done one by one.
// Samples that mean something else than plain counts are turned into counts: a
// MinIsWhite file is inverted, signed samples are moved up by half their range.  The
// offset rule (take 32768 off when every count is above it) then sees every sample.
constexpr uint16_t kWhite = PHOTOMETRIC_MINISWHITE, kGrey = PHOTOMETRIC_MINISBLACK;
constexpr uint16_t kUint = SAMPLEFORMAT_UINT, kSigned = SAMPLEFORMAT_INT;
// The count a stored value means: `top` less it (inverted), or it moved up by `half`.
std::function<int32_t(int32_t)> From(int32_t top) { return [top](int32_t v) { return top - v; }; }
std::function<int32_t(int32_t)> Up(int32_t half) { return [half](int32_t v) { return v + half; }; }

TEST_F(TiffReader, RadiographTurnedAQuarterAnticlockwiseAsCountsWithTheOffsetRule) {
  const struct {
    const char* Name;
    uint32_t W, H;
    uint16_t Bits;
    uint32_t Tile;
    int LowRow, LowCol;   // where a stored 32768 sits; -1: nowhere
    int32_t First, Span;  // other samples store First + (131 r + 7 c) % Span
    uint16_t Photometric = kGrey, SampleFormat = kUint;
    std::function<int32_t(int32_t)> Count = [](int32_t v) { return v; };  // the count a stored value means
  } rows[] = {{"SmallWithOneAt32768", 4, 2, 16, 0, 1, 2, 32769, 30000},
              {"EightBitAsItIs", 3, 2, 8, 0, -1, -1, 1, 255},
              {"AllAbove", 37, 75, 16, 0, -1, -1, 32769, 30000},
              {"LowInLaterBlock", 37, 75, 16, 0, 40, 10, 32769, 30000},
              {"TiledLowLate", 37, 75, 16, 16, 70, 30, 32769, 30000},
              {"MinIsWhite16", 6, 3, 16, 0, -1, -1, 1000, 300, kWhite, kUint, From(65535)},
              {"MinIsWhite8", 6, 3, 8, 0, -1, -1, 3, 250, kWhite, kUint, From(255)},
              {"Signed16AcrossZero", 6, 3, 16, 0, -1, -1, -100, 300, kGrey, kSigned, Up(32768)},
              {"Signed8", 6, 3, 8, 0, -1, -1, -90, 180, kGrey, kSigned, Up(128)},
              {"SignedMinIsWhite16", 6, 3, 16, 0, -1, -1, -100, 300, kWhite, kSigned, From(32767)}};
  const auto path = test::ScratchFolder() / "radiograph.tif";
  for (const auto& c : rows) {
    SCOPED_TRACE(c.Name);
    auto stored = [&](uint32_t r, uint32_t col) -> int32_t {
      if (int(r) == c.LowRow && int(col) == c.LowCol) return 32768;
      return c.First + int32_t(r * 131 + col * 7) % c.Span;
    };
    WriteTiff(path, {c.W, c.H, 1, c.Bits, c.Tile, c.Photometric, c.SampleFormat},
              [&](uint32_t r, uint32_t col, uint32_t) { return uint32_t(stored(r, col)) & 0xFFFF; });
    const ReadOutcome out = Read(path, true);
    ASSERT_EQ(std::tuple(out.Result, out.PixelsRead, prompt.Messages.size()), std::tuple(1, true, 0u));
    const RadiographDesc& rad = model.CurRadiograph();
    ASSERT_EQ(std::pair(rad.Width, rad.Height), std::pair(int32_t(c.H), int32_t(c.W)));
    int32_t lowest = 65536, maximum = 0;
    for (uint32_t r = 0; r < c.H; ++r)
      for (uint32_t col = 0; col < c.W; ++col) lowest = std::min(lowest, c.Count(stored(r, col)));
    const int32_t offset = lowest > 32768 ? 32768 : 0;
    for (uint32_t r = 0; r < c.H; ++r)
      for (uint32_t col = 0; col < c.W; ++col) {
        const int32_t count = c.Count(stored(r, col)) - offset;
        maximum = std::max(maximum, count);
        ASSERT_EQ(rad.Samples[size_t(c.W - 1 - col) * rad.Width + r], count) << r << "," << col;
      }
    EXPECT_EQ(rad.MaxValue, maximum);
    const WorkingBlock& w = model.App.Work;
    EXPECT_EQ(std::tuple(model.CurSection().RadiographCount, w.SampleStep, w.RawLineGroup), std::tuple(1, 1, 1));
  }
}

// The optical image keeps rows 0 .. even(H) - 1 and columns 0 .. even(W) - 1, the longer
// side along the core, halved until at most 8192 rows remain.
TEST_F(TiffReader, OpticalOrientationReductionAndOddSizes) {
  const struct {
    uint32_t W, H;
    uint16_t Bits;
    int32_t ExpectWidth, ExpectHeight;
    int Step;
    bool Rotated;
  } rows[] = {{3, 5, 8, 3, 5, 1, false},  // odd sizes
              {7, 4, 8, 4, 7, 1, true},   // landscape, turned
              {16000, 6, 8, 3, 8000, 2, true},
              {5, 32770, 16, 1, 8192, 4, false}};
  const auto path = test::ScratchFolder() / "optical.tif";
  for (const auto& c : rows) {
    SCOPED_TRACE(testing::Message() << c.W << " x " << c.H);
    // Red, green and blue encode the column, the row and a constant.
    auto value = [&](uint32_t r, uint32_t col, uint32_t k) -> uint32_t {
      const uint32_t v8 = k == 0 ? (col % 251) : k == 1 ? (r % 251) : 77;
      return c.Bits == 8 ? v8 : v8 * 256 + 255;  // the low byte must not show
    };
    WriteTiff(path, {c.W, c.H, 3, c.Bits}, value);
    ASSERT_EQ(std::tuple(Read(path, false).Result, prompt.Messages.size()), std::tuple(1, 0u));
    const OpticalImageDesc& opt = model.CurOptical();
    ASSERT_EQ(std::pair(opt.Width, opt.Height), std::pair(c.ExpectWidth, c.ExpectHeight));
    EXPECT_EQ(std::tuple(opt.CropRight, opt.CropBottom, opt.Upper),
              std::tuple(c.ExpectWidth - 1, c.ExpectHeight - 1, 256));
    EXPECT_EQ(opt.Bitmap.Bits, opt.Pixels);
    const int stride = Dib::StrideFor(opt.Width);
    const uint32_t evenW = c.W & ~1u, evenH = c.H & ~1u;
    for (int y = 0; y < opt.Height; ++y)
      for (int x = 0; x < opt.Width; ++x) {
        // Which TIFF pixel should be here?
        const int64_t tr = c.Rotated ? int64_t(x) * c.Step : int64_t(y) * c.Step;
        const int64_t tc = c.Rotated ? int64_t(opt.Height - 1 - y) * c.Step : int64_t(x) * c.Step;
        const uint8_t* px = &opt.Pixels[size_t(y) * stride + size_t(x) * 3];
        if (tr >= evenH || tc >= evenW) {
          EXPECT_EQ(px[0] | px[1] | px[2], 0) << "dropped pixel at " << x << "," << y;
          continue;
        }
        ASSERT_EQ(px[2], value(uint32_t(tr), uint32_t(tc), 0) >> (c.Bits == 16 ? 8 : 0)) << x << "," << y;
        ASSERT_EQ(px[1], value(uint32_t(tr), uint32_t(tc), 1) >> (c.Bits == 16 ? 8 : 0)) << x << "," << y;
        ASSERT_EQ(px[0], 77);
      }
  }
}

// Files libtiff decodes for us must give exactly the samples of the plain file.  The
// scanner's own layout is read straight from the file, this one in bands on several
// threads; every other layout goes through libtiff.  All give the same images.
TEST_F(TiffReader, CompressedTiledAndBigEndianFilesReadAlike) {
  const char* const variants[] = {"", "--compress deflate", "--compress lzw", "--compress packbits", "--big-endian",
                                  "--tile 32", "--tile 64 --compress deflate --big-endian", "--rows-per-strip 300"};
  std::tuple<SampleBuffer, int32_t, ByteBuffer> plain;
  for (const char* const& variant : variants) {
    SCOPED_TRACE(variant);
    const auto folder = test::ScratchFolder() / std::to_string(&variant - variants);
    test::MakeSampleCore(folder, std::string("--length 4000 --width 300 --optical-length 310 --optical-width 50 "
                                             "--raw-values 0 ") + variant);
    EXPECT_TRUE(Read(folder / "radiograph.tif", true).PixelsRead);
    EXPECT_TRUE(Read(folder / "optical.tif", false).PixelsRead);
    const RadiographDesc& rad = model.CurRadiograph();
    const auto read = std::tuple(rad.Samples, rad.MaxValue, model.CurOptical().Pixels);
    if (variant == variants[0]) plain = read;
    EXPECT_TRUE(read == plain);
  }
  EXPECT_TRUE(prompt.Messages.empty());
}

// The section's title is the folder and the image's file name (the folder alone when
// both would not fit: see the add mode); an optical image keeps a title that is already
// there.  A file that cannot be opened is passed over quietly; a cancelled dialog reads nothing.
TEST_F(TiffReader, FileNameFromTheFolderAndTheImageAndFilesNotRead) {
  const auto folder = test::ScratchFolder() / "KB07-3";
  std::filesystem::create_directories(folder);
  for (const uint16_t samples : {1, 3})
    WriteTiff(folder / (samples == 1 ? "radiograph.tif" : "optical.tif"), {2, 2, samples, 8},
              [](uint32_t, uint32_t, uint32_t) { return 1; });
  const struct {
    const char* Before;
    bool Radiograph;
    const char* Expect;
  } rows[] = {{"", true, "KB07-3/radiograph.tif"},
              {"", false, "KB07-3/optical.tif"},
              {"kept", false, "kept"},
              {"replaced", true, "KB07-3/radiograph.tif"}};
  for (const auto& r : rows) {
    CopyField(model.CurSection().FileName, r.Before);
    Read(folder / (r.Radiograph ? "radiograph.tif" : "optical.tif"), r.Radiograph);
    EXPECT_STREQ(model.CurSection().FileName, r.Expect) << r.Before;
  }
  EXPECT_EQ(prompt.OpenRequests[0].Filters[0].Name, "TIFF files (*.tif)");
  EXPECT_EQ(std::tuple(prompt.OpenRequests[0].InitialName, prompt.OpenRequests[1].InitialName),
            std::tuple("/radiograph.tif", "/optical.tif"));
  const ReadOutcome out = Read(folder / "gone.tif", false);
  EXPECT_EQ(std::tuple(out.Result, out.PixelsRead, model.CurOptical().Loaded()), std::tuple(1, false, true));
  EXPECT_EQ(ReadTiffImage(model, prompt, true, false).Result, 0);
  EXPECT_TRUE(prompt.Messages.empty());
}

// Radiographs added to a section go where the chooser says; a refused one gives its place
// back, and the index is then the count, as the scanner software left it; a fourth is
// refused before any file dialog.
TEST_F(TiffReader, AddModePlacesTheNewRadiographGivesARefusedPlaceBackAndRefusesAFourth) {
  const std::string longFolder(57, 'L');  // 57 + 6 = 63: too long for "L...L/r1.tif"
  const auto folder = test::ScratchFolder() / longFolder;
  std::filesystem::create_directories(folder);
  for (uint32_t i = 1; i <= 3; ++i)
    WriteTiff(folder / ("r" + std::to_string(i) + ".tif"), {2, 1, 1, 16},
              [=](uint32_t, uint32_t, uint32_t) { return i; });
  WriteTiff(folder / "rgb.tif", {4, 4, 3, 8}, [](uint32_t, uint32_t, uint32_t) { return 7; });
  const std::vector<int> places = {0, 0, 1};
  std::vector<int> asked;
  auto place = [&](int count) {
    asked.push_back(count);
    return places.at(asked.size() - 1);
  };
  const CoreSection& s = model.CurSection();
  Read(folder / "r1.tif", true);
  EXPECT_EQ(std::string(s.FileName), longFolder);
  EXPECT_EQ(Read(folder / "rgb.tif", true, true, place).Result, 0);
  EXPECT_EQ(std::tuple(s.RadiographCount, s.Radiographs[0].Samples.at(0), s.Radiographs[1].Loaded(),
                       model.Plot().CurRadiographIndex),
            std::tuple(1, 1, false, 1));
  // The second goes left of the first, the third in the middle.
  Read(folder / "r2.tif", true, true, place);
  Read(folder / "r3.tif", true, true, place);
  EXPECT_EQ(asked, (std::vector<int>{2, 2, 3}));
  EXPECT_EQ(std::tuple(s.RadiographCount, s.Radiographs[0].Samples[0], s.Radiographs[1].Samples[0],
                       s.Radiographs[2].Samples[0], model.Plot().CurRadiographIndex),
            std::tuple(3, 2, 3, 1, 1));

  EXPECT_EQ(ReadTiffImage(model, prompt, true, true).Result, 0);
  EXPECT_EQ(prompt.Texts(), (std::vector<std::string>{msg::kExpected1Sample, msg::kOnlyThreeRadiographs}));
  EXPECT_EQ(prompt.Messages[1].Caption, msg::kDefaultCaption);
  EXPECT_EQ(prompt.OpenRequests.size(), 4u);  // no file dialog for the fourth
}

}  // namespace
}  // namespace sedra
