#pragma once
// Reading back what a writer put in a file, field by field (little-endian).

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <unistd.h>

namespace sedra::test {

inline std::vector<uint8_t> ReadBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
inline std::string ReadAllText(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
inline void WriteAllText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

inline uint32_t U16(const std::vector<uint8_t>& b, size_t at) {
  return at + 2 <= b.size() ? uint32_t(b[at]) | uint32_t(b[at + 1]) << 8 : 0xDEADBEEFu;
}
inline uint32_t U32(const std::vector<uint8_t>& b, size_t at) {
  return at + 4 <= b.size() ? U16(b, at) | U16(b, at + 2) << 16 : 0xDEADBEEFu;
}

// Fields of a header: {offset, size in bytes (2 or 4), expected value}.
struct Field {
  size_t At, Size;
  uint32_t Value;
};
inline void ExpectFields(const std::vector<uint8_t>& b, const std::vector<Field>& fields) {
  for (const Field& f : fields) EXPECT_EQ(f.Size == 2 ? U16(b, f.At) : U32(b, f.At), f.Value) << "field at " << f.At;
}

// A fresh, empty folder under the system's temporary folder, removed at the end.
class TempFolder {
 public:
  explicit TempFolder(const std::string& tag) {
    path_ = std::filesystem::temp_directory_path() /
            ("sedra-" + tag + "-" + std::to_string(::getpid()) + "-" +
             std::to_string(reinterpret_cast<uintptr_t>(this)));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace sedra::test
