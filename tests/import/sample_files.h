#pragma once
// Test inputs: section folders from the sample-core generator and tiny files written
// by the tests themselves, and the model and prompt the readers work on.

#include <tiffio.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "model/model.h"
#include "support/scripted_prompt.h"

namespace sedra::test {

// A fresh model and a prompt that records what the readers tell the user.
class ReaderTest : public ::testing::Test {
 protected:
  Model model;
  ScriptedPrompt prompt;
};

// A fresh folder under the build tree for the running test.
inline std::filesystem::path ScratchFolder() {
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(info->test_suite_name()) + "." + info->name();
  for (char& c : name)
    if (c == '/') c = '_';
  const std::filesystem::path dir = std::filesystem::path(SEDRA_BUILD_DIR) / "test-scratch" / name;
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir;
}

// Runs make-sample-core into `folder` with extra options; fails the test on error.
inline void MakeSampleCore(const std::filesystem::path& folder, const std::string& options = "") {
  const std::string command = std::string("\"") + SEDRA_SAMPLE_TOOL + "\" \"" + folder.string() + "\" " + options +
                              " > /dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), std::streamsize(bytes.size()));
}

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// RGB for colour, MinIsBlack for grey (MinIsWhite is 0, so 0 cannot stand for it).
constexpr uint16_t kAutoPhotometric = 0xFFFF;

struct TiffLayout {
  uint32_t Width = 1, Height = 1;
  uint16_t Samples = 1, Bits = 16;
  uint32_t Tile = 0;  // 0: strips
  uint16_t Photometric = kAutoPhotometric;
  uint16_t SampleFormat = SAMPLEFORMAT_UINT;
};

// Writes a TIFF whose sample (row, column, channel) is value(row, column, channel).
inline void WriteTiff(const std::filesystem::path& path, const TiffLayout& s,
                      const std::function<uint32_t(uint32_t, uint32_t, uint32_t)>& value) {
  TIFFSetWarningHandler(nullptr);
  TIFF* tif = TIFFOpen(path.string().c_str(), "wl");
  ASSERT_NE(tif, nullptr);
  TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, s.Width);
  TIFFSetField(tif, TIFFTAG_IMAGELENGTH, s.Height);
  TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, s.Samples);
  TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, s.Bits);
  const uint16_t photometric = s.Photometric != kAutoPhotometric ? s.Photometric
                               : s.Samples >= 3                ? PHOTOMETRIC_RGB
                                                               : PHOTOMETRIC_MINISBLACK;
  TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, photometric);
  TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tif, TIFFTAG_SAMPLEFORMAT, s.SampleFormat);
  const size_t bytes = s.Bits / 8;  // 0: packed samples, only written to be refused
  auto fill = [&](uint8_t* out, uint32_t r, uint32_t c0, uint32_t cols) {
    for (uint32_t c = 0; bytes && c < cols; ++c)
      for (uint32_t k = 0; k < s.Samples; ++k) {
        const uint32_t v = (r < s.Height && c0 + c < s.Width) ? value(r, c0 + c, k) : 0;
        const size_t i = (size_t(c) * s.Samples + k) * bytes;
        if (bytes == 1) out[i] = uint8_t(v);
        else {
          const uint16_t v16 = uint16_t(v);
          std::memcpy(out + i, &v16, 2);
        }
      }
  };
  if (s.Tile) {
    TIFFSetField(tif, TIFFTAG_TILEWIDTH, s.Tile);
    TIFFSetField(tif, TIFFTAG_TILELENGTH, s.Tile);
    const size_t rowBytes = size_t(s.Tile) * s.Samples * bytes;
    std::vector<uint8_t> tile(rowBytes * s.Tile);
    for (uint32_t y = 0; y < s.Height; y += s.Tile)
      for (uint32_t x = 0; x < s.Width; x += s.Tile) {
        for (uint32_t i = 0; i < s.Tile; ++i) fill(tile.data() + i * rowBytes, y + i, x, s.Tile);
        ASSERT_GE(TIFFWriteTile(tif, tile.data(), x, y, 0, 0), 0);
      }
  } else {
    TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, 4);
    std::vector<uint8_t> row(size_t(TIFFScanlineSize64(tif)));
    for (uint32_t r = 0; r < s.Height; ++r) {
      fill(row.data(), r, 0, s.Width);
      ASSERT_GE(TIFFWriteScanline(tif, row.data(), r, 0), 0);
    }
  }
  TIFFClose(tif);
}

}  // namespace sedra::test
