// The TIFF reader: orientation, reduction, odd sizes, the offset rule, 8- and 16-bit
// colour, the file formats libtiff opens for us, and every refusal with its caption.

#include "import/tiff_reader.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/messages.h"
#include "model/model.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

using test::ScriptedPrompt;
using test::TiffLayout;
using test::WriteTiff;

ReadOutcome ReadFile(Model& model, ScriptedPrompt& prompt, const std::filesystem::path& path, bool radiograph,
                     bool add = false, const RadiographPlaceChooser& choose = {}) {
  prompt.ChooseFile(path.string());
  return ReadTiffImage(model, prompt, radiograph, add, choose);
}

uint16_t RadiographAt(const RadiographDesc& r, int row, int col) { return r.Samples[size_t(row) * r.Width + col]; }

TEST(TiffReader, RadiographIsTurnedAQuarterAnticlockwise) {
  const auto path = test::ScratchFolder() / "radiograph.tif";
  // TIFF 5 wide, 3 high: sample = 100 * row + column.
  WriteTiff(path, {5, 3, 1, 16}, [](uint32_t r, uint32_t c, uint32_t) { return 100 * r + c; });
  Model model;
  ScriptedPrompt prompt;
  const ReadOutcome out = ReadFile(model, prompt, path, true);
  EXPECT_EQ(out.Result, 1);
  EXPECT_TRUE(out.PixelsRead);
  const RadiographDesc& rad = model.CurRadiograph();
  ASSERT_EQ(rad.Width, 3);   // TIFF ImageLength
  ASSERT_EQ(rad.Height, 5);  // TIFF ImageWidth
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 5; ++c) EXPECT_EQ(RadiographAt(rad, 5 - 1 - c, r), 100 * r + c) << r << "," << c;
  EXPECT_EQ(rad.MaxValue, 204);
  EXPECT_EQ(rad.HeightScale, 1.0f);
  EXPECT_EQ(rad.Bitmap.Width, 3);
  EXPECT_EQ(rad.Bitmap.Height, 5);
  EXPECT_EQ(rad.Bitmap.Stride, 12);
  EXPECT_EQ(model.CurSection().RadiographCount, 1);
  EXPECT_EQ(model.App.Work.SampleStep, 1);
  EXPECT_EQ(model.App.Work.RawLineGroup, 1);
  EXPECT_TRUE(prompt.Messages.empty());
  ASSERT_EQ(prompt.OpenRequests.size(), 1u);
  EXPECT_EQ(prompt.OpenRequests[0].Title, "Open TIFF file");
  EXPECT_EQ(prompt.OpenRequests[0].Filters[0].Name, "TIFF files (*.tif)");
  EXPECT_EQ(prompt.OpenRequests[0].InitialName, "/radiograph.tif");
  EXPECT_STREQ(model.Settings().SectionFolder, path.parent_path().string().c_str());
}

struct OffsetCase {
  const char* Name;
  uint32_t Low, High;  // samples alternate between the two
  uint32_t ExpectLow, ExpectMax;
};

class TiffOffset : public ::testing::TestWithParam<OffsetCase> {};

TEST_P(TiffOffset, ShiftedOnlyWhenEverySampleIsAbove32768) {
  const OffsetCase& c = GetParam();
  const auto path = test::ScratchFolder() / "r.tif";
  WriteTiff(path, {4, 2, 1, 16}, [&](uint32_t r, uint32_t col, uint32_t) { return (r + col) % 2 ? c.High : c.Low; });
  Model model;
  ScriptedPrompt prompt;
  ReadFile(model, prompt, path, true);
  const RadiographDesc& rad = model.CurRadiograph();
  EXPECT_EQ(RadiographAt(rad, 3, 0), c.ExpectLow);  // TIFF (0,0)
  EXPECT_EQ(rad.MaxValue, int32_t(c.ExpectMax));
}

INSTANTIATE_TEST_SUITE_P(Rows, TiffOffset,
                         ::testing::Values(OffsetCase{"AllAbove", 32769, 65535, 1, 32767},
                                           OffsetCase{"OneAt32768", 32768, 40000, 32768, 40000},
                                           OffsetCase{"Plain", 100, 200, 100, 200}),
                         [](const auto& i) { return std::string(i.param.Name); });

// Larger radiographs are turned in blocks, with the rows and columns the blocks leave
// done one by one; the offset rule sees every sample wherever it lies.
struct BigOffsetCase {
  const char* Name;
  int LowRow, LowCol;  // where a sample of 32768 sits; -1: nowhere, every sample is above
  bool Tiled;
};

class TiffTurnedInBlocks : public ::testing::TestWithParam<BigOffsetCase> {};

TEST_P(TiffTurnedInBlocks, EverySampleInPlaceAndOffsetRuleOverTheWholeFile) {
  const BigOffsetCase& c = GetParam();
  const auto path = test::ScratchFolder() / "big.tif";
  const uint32_t w = 37, h = 75;
  auto value = [&](uint32_t r, uint32_t col) -> uint32_t {
    if (int(r) == c.LowRow && int(col) == c.LowCol) return 32768;
    return 32769 + (r * 131 + col * 7) % 30000;
  };
  TiffLayout layout{w, h, 1, 16};
  layout.Tile = c.Tiled ? 16 : 0;
  WriteTiff(path, layout, [&](uint32_t r, uint32_t col, uint32_t) { return value(r, col); });
  Model model;
  ScriptedPrompt prompt;
  ASSERT_TRUE(ReadFile(model, prompt, path, true).PixelsRead);
  const RadiographDesc& rad = model.CurRadiograph();
  ASSERT_EQ(rad.Width, int32_t(h));
  ASSERT_EQ(rad.Height, int32_t(w));
  const bool shifted = c.LowRow < 0;
  uint32_t maximum = 0;
  for (uint32_t r = 0; r < h; ++r)
    for (uint32_t col = 0; col < w; ++col) {
      const uint32_t v = value(r, col) - (shifted ? 32768 : 0);
      maximum = std::max(maximum, v);
      ASSERT_EQ(RadiographAt(rad, int(w - 1 - col), int(r)), v) << r << "," << col;
    }
  EXPECT_EQ(rad.MaxValue, int32_t(maximum));
}

INSTANTIATE_TEST_SUITE_P(Rows, TiffTurnedInBlocks,
                         ::testing::Values(BigOffsetCase{"AllAbove", -1, -1, false},
                                           BigOffsetCase{"LowInFirstRows", 3, 5, false},
                                           BigOffsetCase{"LowInLaterBlock", 40, 10, false},
                                           BigOffsetCase{"LowInLastColumns", 50, 35, false},
                                           BigOffsetCase{"LowInLastRows", 74, 2, false},
                                           BigOffsetCase{"TiledAllAbove", -1, -1, true},
                                           BigOffsetCase{"TiledLowLate", 70, 30, true}),
                         [](const auto& i) { return std::string(i.param.Name); });

// The optical image keeps rows 0 .. even(H) - 1 and columns 0 .. even(W) - 1.
struct OpticalCase {
  const char* Name;
  uint32_t W, H;
  uint16_t Bits;
  int32_t ExpectWidth, ExpectHeight;
  int Step;
  bool Rotated;
};

class TiffOptical : public ::testing::TestWithParam<OpticalCase> {};

TEST_P(TiffOptical, OrientationReductionAndOddSizes) {
  const OpticalCase& c = GetParam();
  const auto path = test::ScratchFolder() / "optical.tif";
  // Red, green and blue encode the column, the row and a constant.
  auto value = [&](uint32_t r, uint32_t col, uint32_t k) -> uint32_t {
    const uint32_t v8 = k == 0 ? (col % 251) : k == 1 ? (r % 251) : 77;
    return c.Bits == 8 ? v8 : v8 * 256 + 255;  // the low byte must not show
  };
  WriteTiff(path, {c.W, c.H, 3, c.Bits}, value);
  Model model;
  ScriptedPrompt prompt;
  EXPECT_EQ(ReadFile(model, prompt, path, false).Result, 1);
  EXPECT_TRUE(prompt.Messages.empty());
  const OpticalImageDesc& opt = model.CurOptical();
  ASSERT_EQ(opt.Width, c.ExpectWidth);
  ASSERT_EQ(opt.Height, c.ExpectHeight);
  EXPECT_EQ(opt.CropRight, c.ExpectWidth - 1);
  EXPECT_EQ(opt.CropBottom, c.ExpectHeight - 1);
  EXPECT_EQ(opt.Upper, 256);
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

INSTANTIATE_TEST_SUITE_P(Rows, TiffOptical,
                         ::testing::Values(OpticalCase{"PortraitOdd3x5", 3, 5, 8, 3, 5, 1, false},
                                           OpticalCase{"LandscapeOdd7x4", 7, 4, 8, 4, 7, 1, true},
                                           OpticalCase{"Square16Bit", 6, 6, 16, 6, 6, 1, false},
                                           OpticalCase{"LandscapeHalved", 16000, 6, 8, 3, 8000, 2, true},
                                           OpticalCase{"PortraitQuartered", 5, 32770, 16, 1, 8192, 4, false}),
                         [](const auto& i) { return std::string(i.param.Name); });

// Files libtiff decodes for us must give exactly the samples of the plain file.
TEST(TiffReader, CompressedTiledAndBigEndianFilesReadAlike) {
  const auto base = test::ScratchFolder();
  const std::string common = "--length 300 --width 70 --optical-length 310 --optical-width 50 --raw-values 0 ";
  test::MakeSampleCore(base / "plain", common);
  Model plain;
  ScriptedPrompt prompt;
  ReadFile(plain, prompt, base / "plain" / "radiograph.tif", true);
  ReadFile(plain, prompt, base / "plain" / "optical.tif", false);
  ASSERT_EQ(plain.CurRadiograph().Height, 300);
  for (const char* variant : {"--compress deflate", "--compress lzw", "--compress packbits", "--big-endian",
                              "--tile 32", "--tile 64 --compress deflate --big-endian", "--rows-per-strip 300"}) {
    const auto folder = base / ("v" + std::to_string(std::hash<std::string>()(variant) % 100000));
    test::MakeSampleCore(folder, common + variant);
    Model model;
    ReadFile(model, prompt, folder / "radiograph.tif", true);
    ReadFile(model, prompt, folder / "optical.tif", false);
    EXPECT_EQ(model.CurRadiograph().Samples, plain.CurRadiograph().Samples) << variant;
    EXPECT_EQ(model.CurRadiograph().MaxValue, plain.CurRadiograph().MaxValue) << variant;
    EXPECT_EQ(model.CurOptical().Pixels, plain.CurOptical().Pixels) << variant;
  }
  EXPECT_TRUE(prompt.Messages.empty());
}

TEST(TiffReader, EightBitRadiographIsTakenAsItIs) {
  const auto path = test::ScratchFolder() / "r8.tif";
  WriteTiff(path, {3, 2, 1, 8}, [](uint32_t r, uint32_t c, uint32_t) { return 10 * r + c + 1; });
  Model model;
  ScriptedPrompt prompt;
  ReadFile(model, prompt, path, true);
  EXPECT_EQ(RadiographAt(model.CurRadiograph(), 2, 1), 11);
  EXPECT_EQ(model.CurRadiograph().MaxValue, 13);
}

struct RefusalCase {
  const char* Name;
  bool Radiograph;
  std::function<void(const std::filesystem::path&)> Write;
  const char* Text;
  const char* Caption;
  int ExpectCount;  // RadiographCount afterwards (replace mode, starting from 0)
};

class TiffRefusal : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(TiffRefusal, TellsTheUserAndLeavesNoImage) {
  const RefusalCase& c = GetParam();
  const auto path = test::ScratchFolder() / "bad.tif";
  c.Write(path);
  Model model;
  ScriptedPrompt prompt;
  // Something loaded before must not survive half-overwritten.
  model.CurOptical().Height = 9;
  model.CurOptical().Pixels.assign(30, 1);
  EXPECT_EQ(ReadFile(model, prompt, path, c.Radiograph).Result, 0);
  ASSERT_EQ(prompt.Messages.size(), 1u);
  EXPECT_EQ(prompt.Messages[0].Text, c.Text);
  EXPECT_EQ(prompt.Messages[0].Caption, c.Caption);
  EXPECT_EQ(prompt.Messages[0].ButtonSet, Buttons::Ok);
  if (c.Radiograph) {
    EXPECT_FALSE(model.CurRadiograph().Loaded());
    EXPECT_TRUE(model.CurRadiograph().Samples.empty());
    EXPECT_TRUE(model.CurRadiograph().Bitmap.Empty());
    EXPECT_EQ(model.CurSection().RadiographCount, c.ExpectCount);
  } else if (std::string(c.Text) != msg::kNotVersion42) {
    EXPECT_FALSE(model.CurOptical().Loaded());
    EXPECT_TRUE(model.CurOptical().Pixels.empty());
  }
}

void Rgb(const std::filesystem::path& p, uint16_t samples, uint16_t bits) {
  WriteTiff(p, {4, 4, samples, bits}, [](uint32_t, uint32_t, uint32_t) { return 1; });
}

// A little-endian TIFF by hand: 2 x 2, 16-bit grey, with the compression tag given.
std::string HandMadeTiff(uint16_t compression, uint32_t pixelBytes) {
  std::string b = std::string("II*\0", 4) + std::string("\x08\0\0\0", 4);
  auto u16 = [&](uint16_t v) { b.push_back(char(v & 0xFF)), b.push_back(char(v >> 8)); };
  auto u32 = [&](uint32_t v) { u16(uint16_t(v)), u16(uint16_t(v >> 16)); };
  auto entry = [&](uint16_t tag, uint16_t type, uint32_t value) { u16(tag), u16(type), u32(1), u32(value); };
  u16(7);
  entry(256, 3, 2);
  entry(257, 3, 2);
  entry(258, 3, 16);
  entry(259, 3, compression);
  entry(273, 4, 8 + 2 + 7 * 12 + 4);
  entry(277, 3, 1);
  entry(279, 4, 8);
  u32(0);
  b += std::string(pixelBytes, '\x01');
  return b;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TiffRefusal,
    ::testing::Values(
        RefusalCase{"NotATiff", true, [](const auto& p) { test::WriteBytes(p, "GIF89a........"); }, msg::kNotVersion42,
                    msg::kDefaultCaption, 0},
        RefusalCase{"TooShort", false, [](const auto& p) { test::WriteBytes(p, "II"); }, msg::kNotVersion42,
                    msg::kDefaultCaption, 0},
        RefusalCase{"UnknownCompression", true, [](const auto& p) { test::WriteBytes(p, HandMadeTiff(60000, 8)); },
                    msg::kCompressed, "", 1},
        RefusalCase{"GreyAsOptical", false, [](const auto& p) { Rgb(p, 1, 8); }, msg::kExpected3Samples, "", 0},
        RefusalCase{"ColourAsRadiograph", true, [](const auto& p) { Rgb(p, 3, 8); }, msg::kExpected1Sample, "", 0},
        RefusalCase{"FourBitOptical", false, [](const auto& p) { Rgb(p, 3, 4); }, msg::kExpectedBits, "", 0},
        RefusalCase{"TruncatedPixels", true, [](const auto& p) { test::WriteBytes(p, HandMadeTiff(1, 3)); },
                    msg::kErrorReadingTiff, "", 0},
        RefusalCase{"HugeClaimInTinyFile", true,
                    [](const auto& p) {
                      std::string b = HandMadeTiff(1, 8);
                      b[8 + 2 + 8] = char(0xFF), b[8 + 2 + 9] = char(0xFF);  // width 65535
                      b[8 + 2 + 12 + 8] = char(0xFF), b[8 + 2 + 12 + 9] = char(0xFF);
                      test::WriteBytes(p, b);
                    },
                    msg::kErrorReadingTiff, "", 0}),
    [](const auto& i) { return std::string(i.param.Name); });

TEST(TiffReader, HandMadeFileReads) {
  const auto path = test::ScratchFolder() / "hand.tif";
  test::WriteBytes(path, HandMadeTiff(1, 8));
  Model model;
  ScriptedPrompt prompt;
  EXPECT_EQ(ReadFile(model, prompt, path, true).Result, 1);
  EXPECT_EQ(model.CurRadiograph().Samples, SampleBuffer(4, 0x0101));
}

TEST(TiffReader, FileThatCannotBeOpenedIsPassedOverQuietly) {
  Model model;
  ScriptedPrompt prompt;
  model.CurOptical().Height = 12;
  const ReadOutcome out = ReadFile(model, prompt, test::ScratchFolder() / "gone.tif", false);
  EXPECT_EQ(out.Result, 1);
  EXPECT_FALSE(out.PixelsRead);
  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_EQ(model.CurOptical().Height, 12);
}

TEST(TiffReader, CancelReturnsZero) {
  Model model;
  ScriptedPrompt prompt;
  EXPECT_EQ(ReadTiffImage(model, prompt, false, false).Result, 0);
  EXPECT_EQ(prompt.OpenRequests.at(0).InitialName, "/optical.tif");
}

TEST(TiffReader, AllocationBeyondCapacityIsRefused) {
  Model model;
  ScriptedPrompt prompt;
  const auto path = test::ScratchFolder() / "r.tif";
  WriteTiff(path, {64, 64, 1, 16}, [](uint32_t, uint32_t, uint32_t) { return 5; });
  const std::string bytes = test::ReadBytes(path);
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
  EXPECT_EQ(ReadTiffMemory(model, prompt, data, bytes.size(), true, false, "r.tif", {}, 1000).Result, 0);
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kCouldNotAllocate});
  EXPECT_EQ(prompt.Messages[0].Caption, msg::kDefaultCaption);
  EXPECT_FALSE(model.CurRadiograph().Loaded());
  EXPECT_EQ(ReadTiffMemory(model, prompt, data, bytes.size(), true, false, "r.tif").Result, 1);
  EXPECT_EQ(model.CurRadiograph().Height, 64);
}

struct FileNameCase {
  const char* Folder;
  const char* Before;
  bool Radiograph;
  std::string Expect;
};

class TiffFileName : public ::testing::TestWithParam<FileNameCase> {};

TEST_P(TiffFileName, FolderAndTitle) {
  const FileNameCase& c = GetParam();
  const auto folder = test::ScratchFolder() / c.Folder;
  std::filesystem::create_directories(folder);
  const auto path = folder / (c.Radiograph ? "radiograph.tif" : "optical.tif");
  WriteTiff(path, {2, 2, uint16_t(c.Radiograph ? 1 : 3), 8}, [](uint32_t, uint32_t, uint32_t) { return 1; });
  Model model;
  ScriptedPrompt prompt;
  CopyField(model.CurSection().FileName, c.Before);
  ReadFile(model, prompt, path, c.Radiograph);
  EXPECT_EQ(std::string(model.CurSection().FileName), c.Expect);
}

const std::string kLong(50, 'L');
INSTANTIATE_TEST_SUITE_P(Rows, TiffFileName,
                         ::testing::Values(FileNameCase{"KB07-3", "", true, "KB07-3/radiograph.tif"},
                                           FileNameCase{"KB07-3", "", false, "KB07-3/optical.tif"},
                                           FileNameCase{"KB07-3", "kept", false, "kept"},
                                           FileNameCase{"KB07-3", "replaced", true, "KB07-3/radiograph.tif"},
                                           // 50 + 14 >= 63: the folder alone.
                                           FileNameCase{kLong.c_str(), "", true, kLong}));

TEST(TiffReader, AddModePlacesTheNewRadiographAndRefusesAFourth) {
  const auto folder = test::ScratchFolder();
  Model model;
  ScriptedPrompt prompt;
  for (uint32_t i = 1; i <= 3; ++i) {
    const auto path = folder / ("r" + std::to_string(i) + ".tif");
    WriteTiff(path, {2, 1, 1, 16}, [=](uint32_t, uint32_t, uint32_t) { return i; });
    int askedWith = 0;
    // The second goes left of the first, the third in the middle.
    const int place = i == 2 ? 0 : 1;
    ReadFile(model, prompt, path, true, i > 1, [&](int count) {
      askedWith = count;
      return place;
    });
    if (i > 1) {
      EXPECT_EQ(askedWith, int(i));
    }
  }
  const CoreSection& s = model.CurSection();
  EXPECT_EQ(s.RadiographCount, 3);
  EXPECT_EQ(s.Radiographs[0].Samples[0], 2);
  EXPECT_EQ(s.Radiographs[1].Samples[0], 3);
  EXPECT_EQ(s.Radiographs[2].Samples[0], 1);
  EXPECT_EQ(model.Plot().CurRadiographIndex, 1);

  EXPECT_EQ(ReadTiffImage(model, prompt, true, true).Result, 0);
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kOnlyThreeRadiographs});
  EXPECT_EQ(prompt.Messages[0].Caption, msg::kDefaultCaption);
  EXPECT_EQ(prompt.OpenRequests.size(), 3u);  // no file dialog for the fourth
}

TEST(TiffReader, RefusedAddGivesThePlaceBack) {
  const auto folder = test::ScratchFolder();
  Model model;
  ScriptedPrompt prompt;
  WriteTiff(folder / "a.tif", {2, 1, 1, 16}, [](uint32_t, uint32_t, uint32_t) { return 7; });
  Rgb(folder / "rgb.tif", 3, 8);
  ReadFile(model, prompt, folder / "a.tif", true);
  EXPECT_EQ(ReadFile(model, prompt, folder / "rgb.tif", true, true, [](int) { return 0; }).Result, 0);
  const CoreSection& s = model.CurSection();
  EXPECT_EQ(s.RadiographCount, 1);
  EXPECT_EQ(s.Radiographs[0].Samples.at(0), 7);
  EXPECT_FALSE(s.Radiographs[1].Loaded());
  EXPECT_EQ(model.Plot().CurRadiographIndex, 1);  // the count, as the scanner software left it
}

}  // namespace
}  // namespace sedra
