#pragma once
// Switches the C library to German number formatting (a decimal comma) for the life of
// the object, as the desktop does at start-up for a German user.  Where the system has
// no such locale it is compiled into a scratch folder from the distribution's sources.

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace sedra::test {

class GermanNumbers {
 public:
  GermanNumbers() {
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8")) {
      const auto dir = std::filesystem::temp_directory_path() / "sedra-locales";
      if (!std::filesystem::exists(dir / "de_DE.UTF-8")) {
        std::filesystem::create_directories(dir);
        const std::string make = "localedef -i de_DE -f UTF-8 \"" + (dir / "de_DE.UTF-8").string() + "\" 2>/dev/null";
        (void)std::system(make.c_str());
      }
      ::setenv("LOCPATH", dir.c_str(), 1);
      std::setlocale(LC_ALL, "de_DE.UTF-8");
    }
    const std::lconv* conv = std::localeconv();
    active_ = conv && std::string(conv->decimal_point) == ",";
  }
  ~GermanNumbers() { std::setlocale(LC_ALL, "C"); }
  GermanNumbers(const GermanNumbers&) = delete;
  GermanNumbers& operator=(const GermanNumbers&) = delete;
  bool Active() const { return active_; }

 private:
  bool active_ = false;
};

}  // namespace sedra::test
