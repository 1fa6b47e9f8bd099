// Files that would give a silently wrong image, an empty or absurd plot, or a demand
// for gigabytes: each is answered with its message, and the section keeps what it had.

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "import/document_reader.h"
#include "import/raw_reader.h"
#include "import/sample_files.h"
#include "import/tiff_reader.h"
#include "model/messages.h"
#include "model/numbers.h"

namespace sedra {
namespace {

using test::ScriptedPrompt;
using test::TiffLayout;

enum class Reader { Radiograph, Optical, RawMaxRes, RawHighRes, Document };

struct BadFile {
  const char* Name;
  Reader Kind;
  std::function<std::string()> Bytes;
  std::vector<std::string> Messages;
  int64_t Ceiling = kImageMemoryCeiling;
};

std::string TiffBytes(const TiffLayout& layout, uint32_t value = 1) {
  const auto path = test::ScratchFolder() / "bad.tif";
  test::WriteTiff(path, layout, [value](uint32_t, uint32_t, uint32_t) { return value; });
  return test::ReadFile(path);
}

// Everything a read could change that the user would miss: the section's fields, the
// images' pixels and the depths taken from document.txt.
std::string Snapshot(const Model& m) {
  const CoreSection& s = m.CurSection();
  std::string out;
  auto add = [&out](const void* data, size_t size) { out.append(static_cast<const char*>(data), size); };
  add(static_cast<const CoreSectionFields*>(&s), sizeof(CoreSectionFields));
  add(s.Optical.Pixels.data(), s.Optical.Pixels.size());
  for (const RadiographDesc& r : s.Radiographs) {
    add(r.Samples.data(), r.Samples.size() * sizeof(uint16_t));
    add(&r.Width, sizeof r.Width);
  }
  const WorkingBlock& w = m.App.Work;
  for (float f : {w.StartCoordinate, w.EndCoordinate, w.OpticalStart, w.OpticalEnd, w.OpticalStepSize})
    add(&f, sizeof f);
  return out;
}

// A section with a radiograph, an optical image and document.txt values already read.
const char* const kCamera = "X-ray camera\t1\tOn\tx\r\n";

void LoadEarlierSection(Model& m, ScriptedPrompt& prompt) {
  ParseRawRadiograph(m, prompt, "1\t2\t\n3\t4\t\n", true);
  const std::string rgb = TiffBytes({4, 6, 3, 8});
  ReadTiffMemory(m, prompt, reinterpret_cast<const uint8_t*>(rgb.data()), rgb.size(), false, false, "o.tif");
  ParseSectionMetadata(m, prompt, std::string(kCamera) + "Start coordinate\t100\t\t400\r\n", false);
  CopyField(m.CurSection().FileName, "earlier");
  ASSERT_TRUE(prompt.Messages.empty());
}

class BadFiles : public test::ReaderTest, public ::testing::WithParamInterface<BadFile> {};

TEST_P(BadFiles, AreRefusedWithTheirMessageAndTheSectionKeepsWhatItHad) {
  const BadFile& c = GetParam();
  LoadEarlierSection(model, prompt);
  const std::string before = Snapshot(model);
  const std::string bytes = c.Bytes();
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
  switch (c.Kind) {
    case Reader::Radiograph:
    case Reader::Optical:
      EXPECT_EQ(ReadTiffMemory(model, prompt, data, bytes.size(), c.Kind == Reader::Radiograph, false, "bad.tif", {},
                               c.Ceiling).Result, 0);
      break;
    case Reader::RawMaxRes:
    case Reader::RawHighRes:
      EXPECT_EQ(ParseRawRadiograph(model, prompt, bytes, c.Kind == Reader::RawMaxRes, c.Ceiling).Result, 0);
      break;
    case Reader::Document:
      ParseSectionMetadata(model, prompt, kCamera + bytes, false);
      break;
  }
  EXPECT_EQ(prompt.Texts(), c.Messages);
  EXPECT_TRUE(Snapshot(model) == before) << "the section changed";
  EXPECT_EQ(model.CurSection().RadiographCount, 1);

  // Into a section with no radiograph yet: none is counted afterwards.
  if (c.Kind == Reader::RawMaxRes || c.Kind == Reader::RawHighRes) {
    Model empty;
    ParseRawRadiograph(empty, prompt, bytes, c.Kind == Reader::RawMaxRes, c.Ceiling);
    EXPECT_EQ(empty.CurSection().RadiographCount, 0);
  }
}

std::function<std::string()> Text(std::string text) {
  return [text] { return text; };
}
std::function<std::string()> Tiff(TiffLayout layout, uint32_t value = 1) {
  return [layout, value] { return TiffBytes(layout, value); };
}

// 2000 x 2000 constant counts in Zstandard: 8 MB of samples in a file of a few hundred
// bytes.
const TiffLayout kFlat{2000, 2000, 1, 16, 0, PHOTOMETRIC_MINISBLACK, SAMPLEFORMAT_UINT, COMPRESSION_ZSTD, 2000};

INSTANTIATE_TEST_SUITE_P(
    Rows, BadFiles,
    ::testing::Values(
        BadFile{"PaletteRadiograph", Reader::Radiograph, Tiff({4, 4, 1, 8, 0, PHOTOMETRIC_PALETTE}),
                {msg::kNotGreyRadiograph}},
        BadFile{"SeparatedInksAsRadiograph", Reader::Radiograph, Tiff({4, 4, 1, 16, 0, PHOTOMETRIC_SEPARATED}),
                {msg::kNotGreyRadiograph}},
        BadFile{"HalfFloatRadiograph", Reader::Radiograph, Tiff({4, 4, 1, 16, 0, PHOTOMETRIC_MINISBLACK, SAMPLEFORMAT_IEEEFP}),
                {msg::kNotWholeNumberSamples}},
        BadFile{"SignedColours", Reader::Optical, Tiff({4, 4, 3, 8, 0, PHOTOMETRIC_RGB, SAMPLEFORMAT_INT}),
                {msg::kNotWholeNumberSamples}},
        BadFile{"LabColours", Reader::Optical, Tiff({4, 4, 3, 8, 0, PHOTOMETRIC_CIELAB}), {msg::kNotRgbImage}},
        BadFile{"CompressedClaimAboveTheCeiling", Reader::Radiograph, Tiff(kFlat), {msg::kCouldNotAllocate},
                int64_t(32) << 20},
        BadFile{"OneLineAtHighRes", Reader::RawHighRes, Text("107\t100\t\r\n"), {Format(msg::kTooFewRawLines, 1, 2)}},
        BadFile{"RawOfTabsAboveTheCeiling", Reader::RawMaxRes, Text(std::string(3000, '\t') + std::string(400, '\n')),
                {msg::kCouldNotAllocate}, int64_t(64) << 20},
        BadFile{"NegativeStep", Reader::Document, Text("Step size\t-200\tum\tx\r\n"),
                {Format(msg::kBadStepSize, "-200")}},
        BadFile{"ZeroStep", Reader::Document, Text("Step size\t0\tum\tx\r\n"), {Format(msg::kBadStepSize, "0")}},
        BadFile{"OverflowingStep", Reader::Document, Text("Step size\t99999999999\tum\tx\r\n"),
                {Format(msg::kBadStepSize, "99999999999")}},
        BadFile{"InfiniteStart", Reader::Document, Text("Start coordinate\tinf\t\t1e39\r\n"),
                {Format(msg::kBadCoordinate, "inf"), Format(msg::kBadCoordinate, "1e39")}},
        BadFile{"OpticalNotANumber", Reader::Document, Text("Optical Start\tnan\t\t-3e20\r\n"),
                {Format(msg::kBadCoordinate, "nan"), Format(msg::kBadCoordinate, "-3e20")}}),
    [](const auto& i) { return std::string(i.param.Name); });

using BadFilesCounterpart = test::ReaderTest;

// The flat file above needs 41 MB loaded: far more than its size times any ratio a
// file-size guard would allow, and well within the memory ceiling, so it is read.
TEST_F(BadFilesCounterpart, HighlyCompressedFileWithinTheCeilingIsRead) {
  ASSERT_TRUE(TIFFIsCODECConfigured(COMPRESSION_ZSTD));
  const std::string bytes = TiffBytes(kFlat, 40000);
  ASSERT_LT(bytes.size() * 1100, size_t(2000) * 2000 * 2);
  const ReadOutcome out =
      ReadTiffMemory(model, prompt, reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), true, false, "f.tif");
  EXPECT_TRUE(out.PixelsRead);
  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_EQ(model.CurRadiograph().Samples.at(123456), 40000 - 32768);
}

}  // namespace
}  // namespace sedra
