// The BMP and TIFF writers, checked byte by byte against the layouts files in use have.

#include <gtest/gtest.h>

#include <cstring>

#include "model/messages.h"
#include "output/image_files.h"
#include "output/file_bytes.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

using test::ReadBytes;
using test::U16;
using test::U32;

// A display that describes a bitmap and hands out rows filled with a known pattern.
class FakeDisplay : public BitmapSource {
 public:
  BitmapInfoHeader Format;
  bool DescribeWorks = true, RowsWork = true;
  std::vector<uint8_t> Extra;  // what the display puts after the header

  bool Describe(BitmapInfoHeader& header) override {
    if (!DescribeWorks) return false;
    header = Format;
    return true;
  }
  bool ReadRows(const BitmapInfoHeader& header, uint8_t* extra, size_t extraSize, uint8_t* rows) override {
    if (!RowsWork) return false;
    EXPECT_EQ(extraSize, Extra.size());
    if (extraSize) std::memcpy(extra, Extra.data(), extraSize);
    for (uint32_t i = 0; i < header.SizeImage; ++i) rows[i] = uint8_t(i * 7 + 1);
    return true;
  }
};

struct WrittenFile {
  test::TempFolder Folder{"bmp"};
  std::filesystem::path Path = Folder / "out.bin";
  std::FILE* File = std::fopen(Path.string().c_str(), "wb");
  std::vector<uint8_t> Close() {
    std::fclose(File);
    return ReadBytes(Path);
  }
};

TEST(HeaderSize, FollowsTheBitsPerPixel) {
  const struct {
    int Bits;
    uint32_t Size;
  } rows[] = {{24, 40}, {16, 52}, {32, 52}, {8, 40 + 4 * 256}, {4, 40 + 4 * 16}, {1, 48}};
  for (const auto& r : rows) EXPECT_EQ(BmpHeaderSize(r.Bits), r.Size) << r.Bits << " bits";
}

TEST(WriteBmp, TwentyFourBitFileHasTheOversizedLengthField) {
  WrittenFile out;
  FakeDisplay display;
  display.Format.Width = 3;  // 9 bytes a row, padded to 12
  display.Format.Height = 2;
  display.Format.BitCount = 24;
  test::ScriptedPrompt prompt;
  ASSERT_TRUE(WriteBmp(prompt, out.File, display));
  const auto b = out.Close();

  ASSERT_EQ(b.size(), 14u + 40u + 24u);
  EXPECT_EQ(b[0], 'B');
  EXPECT_EQ(b[1], 'M');
  EXPECT_EQ(U32(b, 2), 24u + 40u + 54u);  // 40 more than the file really has
  EXPECT_EQ(U32(b, 6), 0u);
  EXPECT_EQ(U32(b, 10), 54u);
  EXPECT_EQ(U32(b, 14), 40u);  // information header
  EXPECT_EQ(U32(b, 18), 3u);
  EXPECT_EQ(U32(b, 22), 2u);
  EXPECT_EQ(U16(b, 26), 1u);
  EXPECT_EQ(U16(b, 28), 24u);
  EXPECT_EQ(U32(b, 30), 0u);
  EXPECT_EQ(U32(b, 34), 24u);  // image size worked out from the padded rows
  for (size_t i = 0; i < 24; ++i) EXPECT_EQ(b[54 + i], uint8_t(i * 7 + 1)) << i;
  EXPECT_TRUE(prompt.Messages.empty());
}

TEST(WriteBmp, ThirtyTwoBitFileCarriesItsMasksAfterTheHeader) {
  WrittenFile out;
  FakeDisplay display;
  display.Format.Width = 2;
  display.Format.Height = 1;
  display.Format.BitCount = 32;
  display.Format.Compression = 3;
  display.Extra = {0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0};
  test::ScriptedPrompt prompt;
  ASSERT_TRUE(WriteBmp(prompt, out.File, display));
  const auto b = out.Close();

  ASSERT_EQ(b.size(), 14u + 52u + 8u);
  EXPECT_EQ(U32(b, 2), 8u + 52u + 54u);
  EXPECT_EQ(U32(b, 10), 66u);
  EXPECT_EQ(U32(b, 14), 40u);  // the header itself stays 40 bytes; the masks follow
  EXPECT_EQ(U32(b, 30), 3u);
  EXPECT_EQ(U32(b, 54), 0x00FF0000u);
  EXPECT_EQ(U32(b, 58), 0x0000FF00u);
  EXPECT_EQ(U32(b, 62), 0x000000FFu);
  EXPECT_EQ(b[66], 1);
}

TEST(WriteBmp, FailuresOfTheDisplayAreReportedWithTheirOwnMessages) {
  {
    WrittenFile out;
    FakeDisplay display;
    display.DescribeWorks = false;
    test::ScriptedPrompt prompt;
    EXPECT_FALSE(WriteBmp(prompt, out.File, display));
    EXPECT_TRUE(out.Close().empty());
    ASSERT_EQ(prompt.Messages.size(), 1u);
    EXPECT_EQ(prompt.Messages[0].Text, msg::kGetDIBits1Failed);
    EXPECT_EQ(prompt.Messages[0].Caption, "");
    EXPECT_EQ(prompt.Messages[0].ButtonSet, Buttons::Ok);
  }
  {
    WrittenFile out;
    FakeDisplay display;
    display.Format.Width = 4;
    display.Format.Height = 4;
    display.RowsWork = false;
    test::ScriptedPrompt prompt;
    EXPECT_FALSE(WriteBmp(prompt, out.File, display));
    // The file header was already out when the rows could not be read.
    EXPECT_EQ(out.Close().size(), 14u);
    EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kGetDIBitsFailed});
  }
}

// Pixel rows as the save command hands them over: bytes numbered so that any shift
// or reordering shows.
std::vector<uint8_t> NumberedRows(int32_t w, int32_t h) {
  std::vector<uint8_t> px(size_t(w + 1) * size_t(h) * 3);
  for (size_t i = 0; i < px.size(); ++i) px[i] = uint8_t(i % 251);
  return px;
}

TEST(WriteTiff, ThousandBySevenHundredPlotHasTheKnownLayout) {
  const int32_t w = 1000, h = 700;
  EXPECT_EQ(TiffDirectoryOffset(w, h), 2100008u);
  EXPECT_EQ(TiffFileSize(w, h), 2100346u);

  WrittenFile out;
  const auto px = NumberedRows(w, h);
  ASSERT_TRUE(WriteTiff(out.File, w, h, px.data(), "plot"));
  const auto b = out.Close();
  ASSERT_EQ(b.size(), 2100346u);

  EXPECT_EQ(b[0], 'I');
  EXPECT_EQ(b[1], 'I');
  EXPECT_EQ(U16(b, 2), 42u);
  const uint32_t p = U32(b, 4);
  ASSERT_EQ(p, 2100008u);
  EXPECT_TRUE(std::equal(px.begin(), px.begin() + 2100000, b.begin() + 8));
  EXPECT_EQ(U16(b, p), 16u);

  const struct {
    uint32_t Tag, Type, Count, Value;
  } entries[] = {
      {255, 3, 1, 1},           {256, 3, 1, 700},      {257, 3, 1, 1000},     {258, 3, 1, 8},
      {259, 3, 1, 1},           {262, 3, 1, 2},        {269, 2, 64, p + 194}, {273, 4, 1, 8},
      {274, 3, 1, 1},           {277, 3, 1, 3},        {278, 3, 1, 1000},     {279, 4, 1, 2100000},
      {284, 3, 1, 1},           {305, 2, 64, p + 258}, {282, 5, 1, p + 322},  {283, 5, 1, p + 330},
  };
  for (size_t i = 0; i < 16; ++i) {
    const size_t at = p + 2 + i * 12;
    EXPECT_EQ(U16(b, at), entries[i].Tag) << "entry " << i + 1;
    EXPECT_EQ(U16(b, at + 2), entries[i].Type) << "entry " << i + 1;
    EXPECT_EQ(U32(b, at + 4), entries[i].Count) << "entry " << i + 1;
    EXPECT_EQ(U32(b, at + 8), entries[i].Value) << "entry " << i + 1;
  }
  // The document name right after the entries (no next-directory offset between).
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&b[p + 194])), "plot");
  EXPECT_TRUE(std::all_of(b.begin() + p + 194 + 4, b.begin() + p + 258, [](uint8_t c) { return c == 0; }));
  EXPECT_TRUE(std::all_of(b.begin() + p + 258, b.begin() + p + 322, [](uint8_t c) { return c == 0; }));
  EXPECT_EQ(U32(b, p + 322), 0x80000000u);
  EXPECT_EQ(U32(b, p + 326), 100000u);
  EXPECT_EQ(U32(b, p + 330), 0x80000000u);
  EXPECT_EQ(U32(b, p + 334), 100000u);
}

TEST(WriteTiff, WritesTheFirstBytesOfThePaddedRowsAndPadsTheDirectoryOffset) {
  // 3 x 2: rows of 9 bytes padded to 12, so D = 18 takes the whole first row with its
  // padding and only half of the second; P = 26 rounded up to 28.
  const int32_t w = 3, h = 2;
  std::vector<uint8_t> px(24);
  for (size_t i = 0; i < px.size(); ++i) px[i] = uint8_t(0xA0 + i);
  WrittenFile out;
  ASSERT_TRUE(WriteTiff(out.File, w, h, px.data(), "core-7 section 2"));
  const auto b = out.Close();
  ASSERT_EQ(b.size(), 28u + 338u);
  EXPECT_EQ(U32(b, 4), 28u);
  for (size_t i = 0; i < 18; ++i) EXPECT_EQ(b[8 + i], px[i]) << i;
  EXPECT_EQ(b[26], 0);
  EXPECT_EQ(b[27], 0);
  EXPECT_EQ(U32(b, 28 + 2 + 11 * 12 + 8), 18u);  // StripByteCounts
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&b[28 + 194])), "core-7 section 2");
}

TEST(WriteTiff, LongDocumentNameIsCutToTheField) {
  const std::string name(80, 'x');
  std::vector<uint8_t> px(8, 0);
  WrittenFile out;
  ASSERT_TRUE(WriteTiff(out.File, 1, 1, px.data(), name.c_str()));
  const auto b = out.Close();
  const size_t at = 12 + 194;
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&b[at])), std::string(63, 'x'));
  EXPECT_EQ(b[at + 63], 0);
  EXPECT_EQ(U32(b, at + 64 + 64), 0x80000000u);  // the field did not spill into the next
}

TEST(PackBottomUp24, TurnsTopDownArgbIntoPaddedBottomUpBgr) {
  // 2 x 2, top row red then green, bottom row blue then white; 12 bytes a line with
  // a few bytes of slack, as a QImage may have.
  const uint32_t pixels[2][3] = {{0xFFFF0000u, 0xFF00FF00u, 0xDEADBEEFu}, {0xFF0000FFu, 0xFFFFFFFFu, 0xDEADBEEFu}};
  std::vector<uint8_t> out(DibStride(2, 24) * 2, 0x55);
  ASSERT_EQ(out.size(), 16u);
  PackBottomUp24(reinterpret_cast<const uint8_t*>(pixels), 2, 2, sizeof pixels[0], out.data());
  const std::vector<uint8_t> expected = {
      0xFF, 0, 0, 0xFF, 0xFF, 0xFF, 0, 0,  // first row in the file: the bottom one
      0, 0, 0xFF, 0, 0xFF, 0, 0, 0,        // then the top one
  };
  EXPECT_EQ(out, expected);
}

}  // namespace
}  // namespace sedra
