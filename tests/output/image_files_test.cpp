// The BMP and TIFF writers, checked byte by byte against the layouts files in use have.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <tuple>

#include "model/file_replace.h"
#include "model/messages.h"
#include "output/file_bytes.h"
#include "output/image_files.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

// A display that describes a bitmap and hands out rows filled with a known pattern.
class FakeDisplay : public BitmapSource {
 public:
  BitmapInfoHeader Format;
  bool DescribeWorks = true, RowsWork = true;
  std::vector<uint8_t> Extra;  // what the display puts after the header

  FakeDisplay(int32_t width, int32_t height, uint16_t bits = 24) {
    std::tie(Format.Width, Format.Height, Format.BitCount) = std::tuple(width, height, bits);
  }
  bool Describe(BitmapInfoHeader& header) override {
    header = Format;
    return DescribeWorks;
  }
  bool ReadRows(const BitmapInfoHeader& header, uint8_t* extra, size_t extraSize, uint8_t* rows) override {
    EXPECT_EQ(extraSize, Extra.size());
    if (extraSize) std::memcpy(extra, Extra.data(), extraSize);
    for (uint32_t i = 0; i < header.SizeImage; ++i) rows[i] = uint8_t(i * 7 + 1);
    return RowsWork;
  }
};

struct WrittenFile {
  WrittenFile() { EXPECT_TRUE(File.Open()); }
  test::TempFolder Folder{"bmp"};
  std::filesystem::path Path = Folder / "out.bin";
  ReplacingFile File{Path};
  std::vector<uint8_t> Close() {
    EXPECT_TRUE(File.Commit());
    return test::ReadBytes(Path);
  }
};

TEST(HeaderSize, FollowsTheBitsPerPixel) {
  for (auto [bits, size] : {std::pair{24, 40u}, {16, 52u}, {32, 52u}, {8, 40u + 4 * 256}, {4, 40u + 4 * 16}, {1, 48u}})
    EXPECT_EQ(BmpHeaderSize(bits), size) << bits << " bits";
}

TEST(WriteBmp, HeaderMasksAndRows) {
  const struct {
    int Width, Height, Bits;
    std::vector<uint8_t> Masks;
    size_t RowsAt, RowBytes;
    std::vector<test::Field> Fields;
  } rows[] = {
      // 9 bytes a row, padded to 12.  "BM", a length 40 more than the file really has,
      // the 40-byte information header and the image size worked out from the padded rows.
      {3, 2, 24, {}, 54, 24, {{0, 2, 0x4D42}, {2, 4, 24 + 40 + 54}, {6, 4, 0}, {10, 4, 54}, {14, 4, 40}, {18, 4, 3},
                              {22, 4, 2}, {26, 2, 1}, {28, 2, 24}, {30, 4, 0}, {34, 4, 24}}},
      // The header itself stays 40 bytes; the masks follow it.
      {2, 1, 32, {0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0}, 66, 8,
       {{2, 4, 8 + 52 + 54}, {10, 4, 66}, {14, 4, 40}, {30, 4, 3}, {54, 4, 0x00FF0000}, {58, 4, 0x0000FF00},
        {62, 4, 0x000000FF}}},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.Bits);
    WrittenFile out;
    FakeDisplay display(r.Width, r.Height, uint16_t(r.Bits));
    display.Format.Compression = r.Masks.empty() ? 0 : 3;
    display.Extra = r.Masks;
    test::ScriptedPrompt prompt;
    ASSERT_TRUE(WriteBmp(prompt, out.File, display));
    const auto b = out.Close();
    ASSERT_EQ(b.size(), r.RowsAt + r.RowBytes);
    test::ExpectFields(b, r.Fields);
    for (size_t i = 0; i < r.RowBytes; ++i) EXPECT_EQ(b[r.RowsAt + i], uint8_t(i * 7 + 1)) << i;
    EXPECT_TRUE(prompt.Messages.empty());
  }
}

TEST(WriteBmp, FailuresOfTheDisplayAreReportedWithTheirOwnMessages) {
  // Whatever was written before is never committed (see the failing writes of Save Image).
  for (auto [describes, message] : {std::pair{false, msg::kGetDIBits1Failed}, {true, msg::kGetDIBitsFailed}}) {
    WrittenFile out;
    FakeDisplay display(4, 4);
    display.DescribeWorks = describes;
    display.RowsWork = false;
    test::ScriptedPrompt prompt;
    EXPECT_FALSE(WriteBmp(prompt, out.File, display));
    EXPECT_EQ(out.File.Error(), 0) << "no write failed";
    ASSERT_EQ(prompt.Messages.size(), 1u);
    const auto& m = prompt.Messages[0];
    EXPECT_EQ(std::tie(m.Text, m.Caption, m.ButtonSet), std::tuple(message, "", Buttons::Ok));
  }
}

TEST(WriteTiff, PaddedRowsTheDirectoryAndItsFields) {
  // 3 x 2: rows of 9 bytes padded to 12, so D = 18 takes the whole first row with its
  // padding and only half of the second; P = 26 rounded up to 28.  The image is stored
  // turned, its width being the plot's height; the long document name is cut to its field.
  std::vector<uint8_t> px(24);
  for (size_t i = 0; i < px.size(); ++i) px[i] = uint8_t(0xA0 + i);
  WrittenFile out;
  ASSERT_TRUE(WriteTiff(out.File, 3, 2, px.data(), std::string(80, 'x').c_str()));
  const auto b = out.Close();
  const uint32_t p = 28;
  ASSERT_EQ(b.size(), p + 338u);
  test::ExpectFields(b, {{0, 2, 0x4949}, {2, 2, 42}, {4, 4, p}, {26, 2, 0}, {p, 2, 16}});
  EXPECT_TRUE(std::equal(px.begin(), px.begin() + 18, b.begin() + 8));
  const struct {
    uint32_t Tag, Type, Count, Value;
  } entries[] = {
      {255, 3, 1, 1},        {256, 3, 1, 2},        {257, 3, 1, 3},        {258, 3, 1, 8},
      {259, 3, 1, 1},        {262, 3, 1, 2},        {269, 2, 64, p + 194}, {273, 4, 1, 8},
      {274, 3, 1, 1},        {277, 3, 1, 3},        {278, 3, 1, 3},        {279, 4, 1, 18},
      {284, 3, 1, 1},        {305, 2, 64, p + 258}, {282, 5, 1, p + 322},  {283, 5, 1, p + 330},
  };
  for (size_t i = 0; i < 16; ++i) {
    const size_t at = p + 2 + i * 12;
    SCOPED_TRACE(i + 1);
    test::ExpectFields(b, {{at, 2, entries[i].Tag}, {at + 2, 2, entries[i].Type}, {at + 4, 4, entries[i].Count},
                           {at + 8, 4, entries[i].Value}});
  }
  // The document name right after the entries (no next-directory offset between),
  // then the empty software field and the two resolutions.
  EXPECT_EQ(reinterpret_cast<const char*>(&b[p + 194]), std::string(63, 'x'));
  EXPECT_TRUE(std::all_of(b.begin() + p + 194 + 63, b.begin() + p + 322, [](uint8_t c) { return c == 0; }));
  test::ExpectFields(b, {{p + 322, 4, 0x80000000u}, {p + 326, 4, 100000}, {p + 330, 4, 0x80000000u},
                         {p + 334, 4, 100000}});
}

}  // namespace
}  // namespace sedra
