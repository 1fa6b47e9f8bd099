#include "import/document_reader.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"

namespace sedra {
namespace {

// Steps beyond a metre and depths beyond 10 km come from no core scanner; they only
// arise from damaged files, and would overflow the depth axis.
constexpr int32_t kMaxStepMicrometres = 1000000;
constexpr float kMaxDepthMm = 1.0e7f;

// Fields are found by cutting the line at its last TAB, again and again: the scanner
// puts the values at the right-hand end, after captions of varying width.
bool CutLast(std::string_view& rest, std::string_view& field) {
  const size_t tab = rest.rfind('\t');
  if (tab == std::string_view::npos) return false;
  field = rest.substr(tab + 1);
  rest = rest.substr(0, tab);
  return true;
}

// The field between the first and the second TAB (to the end when there is no second).
bool SecondField(std::string_view line, std::string_view& field) {
  const size_t first = line.find('\t');
  if (first == std::string_view::npos) return false;
  field = line.substr(first + 1);
  const size_t second = field.find('\t');
  if (second != std::string_view::npos) field = field.substr(0, second);
  return true;
}

// "%d": blanks, a sign and digits; false (value untouched) when there is no number.
// Out-of-range numbers saturate.
bool ScanInt(std::string_view text, size_t& pos, int32_t& value) {
  size_t i = pos;
  while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  if (i >= text.size() || !std::isdigit(static_cast<unsigned char>(text[i]))) return false;
  int64_t v = 0;
  while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) {
    if (v < int64_t(1) << 32) v = v * 10 + (text[i] - '0');
    ++i;
  }
  if (negative) v = -v;
  value = int32_t(v > INT32_MAX ? INT32_MAX : v < INT32_MIN ? INT32_MIN : v);
  pos = i;
  return true;
}

bool ScanInt(std::string_view text, int32_t& value) {
  size_t pos = 0;
  return ScanInt(text, pos, value);
}

// "%f": false (value untouched) when the text does not start with a number.
bool ScanFloat(std::string_view text, float& value) { return LeadingReal(text, value); }

template <size_t N>
void Store(char (&field)[N], std::string_view text) {
  CopyField(field, std::string(text).c_str());
}

template <size_t N>
void Append(char (&field)[N], std::string_view text) {
  const size_t used = strnlen(field, N - 1);
  CopyField(field + used, N - used, std::string(text).c_str());
}

// Splits the text at CR and LF, skipping empty lines.
class Lines {
 public:
  explicit Lines(std::string_view text) : text_(text) {}
  bool Next(std::string_view& line) {
    while (pos_ < text_.size() && (text_[pos_] == '\r' || text_[pos_] == '\n')) ++pos_;
    if (pos_ >= text_.size()) return false;
    const size_t end = text_.find_first_of("\r\n", pos_);
    const size_t stop = end == std::string_view::npos ? text_.size() : end;
    line = text_.substr(pos_, stop - pos_);
    pos_ = stop;
    return true;
  }

 private:
  std::string_view text_;
  size_t pos_ = 0;
};

class MetadataParser {
 public:
  MetadataParser(Model& model, Prompt& prompt, bool warn)
      : model_(model), prompt_(prompt), section_(model.CurSection()), work_(model.Work()) {
    const int index = model.Plot().CurSectionIndex;
    if (warn && index >= 1 && index < kMaxSections && model.Settings().ShowWarnings) previous_ = &model.Section(index - 1);
  }

  void Run(std::string_view text) {
    section_.StepSizeText[0] = '\0';
    work_.OpticalEnd = 0;
    Lines lines(text);
    std::string_view line;
    while (lines.Next(line)) {
      if (Has(line, "Station") || Has(line, "Base path")) {
        std::string_view next;
        if (!lines.Next(next)) break;  // a header with no line after it ends the file
        Identification(next);
      } else if (Has(line, "Year")) {
        std::string_view next;
        if (!lines.Next(next)) break;
        ScanDate(next);
      } else if (Has(line, "Voltage")) {
        Voltage(line);
      } else if (Has(line, "Current")) {
        Current(line);
      } else if (Has(line, "Exposure")) {
        Exposure(line);
      } else if (Has(line, "camera")) {
        Camera(line);
      } else if (Has(line, "Step size") && section_.StepSizeText[0] == '\0') {
        StepSize(line);
      } else if (Has(line, "XRF exp")) {
        std::string_view value, unit;
        if (ValueAndUnit(line, value, unit)) Store(section_.XrfExposureText, Joined(value, unit));
      } else if (Has(line, "XRF volt")) {
        XrfVoltage(line);
      } else if (Has(line, "Tube")) {
        std::string_view tube;
        if (SecondField(line, tube)) {
          Store(section_.TubeText, tube);
          if (previous_ && std::strcmp(section_.TubeText, previous_->TubeText) != 0) Warn(msg::kWarnTube);
        }
      } else if (Has(line, "Start coordinate")) {
        Coordinates(line, work_.StartCoordinate, work_.EndCoordinate);
      } else if (Has(line, "Optical Start")) {
        Coordinates(line, work_.OpticalStart, work_.OpticalEnd);
      }
    }
  }

 private:
  static bool Has(std::string_view line, const char* key) { return line.find(key) != std::string_view::npos; }
  static std::string Joined(std::string_view a, std::string_view b) {
    std::string s(a);
    s += ' ';
    s += b;
    return s;
  }

  // L - 2 is the value and L - 1 its unit; the last field is not used.
  static bool ValueAndUnit(std::string_view line, std::string_view& value, std::string_view& unit) {
    std::string_view rest = line, last;
    return CutLast(rest, last) && CutLast(rest, unit) && CutLast(rest, value);
  }

  void Warn(const char* text) { prompt_.Message(text, "", Icon::None, Buttons::Ok); }

  void Identification(std::string_view line) {
    std::string_view rest = line, field;
    if (!CutLast(rest, field)) return;
    Store(section_.IdField4, field);
    if (!CutLast(rest, field)) return;
    Store(section_.SectionName, field);
    if (!CutLast(rest, field)) return;
    Store(section_.CoreName, field);
    Store(section_.SiteName, rest);
  }

  void ScanDate(std::string_view line) {
    size_t pos = 0;
    if (!ScanInt(line, pos, section_.ScanYear)) return;
    if (!ScanInt(line, pos, section_.ScanMonth)) return;
    ScanInt(line, pos, section_.ScanDay);
  }

  void Voltage(std::string_view line) {
    std::string_view value, unit;
    if (!ValueAndUnit(line, value, unit)) return;
    Store(section_.TubeSettingsText, value);
    ScanInt(value, section_.TubeVoltage);
    if (previous_ && section_.TubeVoltage != previous_->TubeVoltage) Warn(msg::kWarnVoltage);
    Append(section_.TubeSettingsText, " ");
    Append(section_.TubeSettingsText, unit);
  }

  void Current(std::string_view line) {
    std::string_view value, unit;
    if (!ValueAndUnit(line, value, unit)) return;
    Append(section_.TubeSettingsText, " ");
    Append(section_.TubeSettingsText, value);
    ScanInt(value, section_.TubeCurrent);
    if (previous_ && section_.TubeCurrent != previous_->TubeCurrent) Warn(msg::kWarnCurrent);
    Append(section_.TubeSettingsText, " ");
    Append(section_.TubeSettingsText, unit);
  }

  void Exposure(std::string_view line) {
    std::string_view value, unit;
    if (!ValueAndUnit(line, value, unit)) return;
    ScanInt(value, section_.Exposure);
    if (previous_ && section_.Exposure != previous_->Exposure) Warn(msg::kWarnExposure);
    // Only the unit is appended (the header prints the number from Exposure), so a
    // second read of the same section repeats the unit.  Users have seen it for years.
    Append(section_.ExposureText, unit);
  }

  void Camera(std::string_view line) {
    std::string_view value, unit;
    if (!ValueAndUnit(line, value, unit)) return;
    Store(section_.CameraText, Joined(value, unit));
    ScanInt(value, cameraSwitch_);
  }

  void StepSize(std::string_view line) {
    std::string_view value, unit;
    if (!ValueAndUnit(line, value, unit)) return;
    // After the optical lines the step belongs to the optical camera; the radiograph's
    // step text is then left empty and the point step falls back to 1 mm.
    if (work_.OpticalEnd > 0) {
      float step = 0;
      if (!ScanFloat(value, step)) return;
      if (std::isfinite(step) && step > 0 && step <= kMaxStepMicrometres) work_.OpticalStepSize = step;
      else Refuse(msg::kBadStepSize, value);
    } else if (cameraSwitch_ != 0) {
      // The depth axis takes the leading whole number of this text as micrometres per
      // point: none (or text) means 1 mm, but a step of zero, below zero or beyond
      // any scanner would give an empty, reversed or overflowing axis.  Such a line is
      // passed over, so the step is 1 mm as without one.
      int32_t micrometres = 0;
      size_t pos = 0;
      if (ScanInt(value, pos, micrometres) && (micrometres <= 0 || micrometres > kMaxStepMicrometres)) {
        Refuse(msg::kBadStepSize, value);
        return;
      }
      Store(section_.StepSizeText, Joined(value, unit));
    }
  }

  // A value the plot cannot use is named to the user and left out.
  void Refuse(const char* text, std::string_view value) {
    const std::string shown(value.substr(0, 32));
    prompt_.Message(Format(text, shown.c_str()), "", Icon::Exclamation, Buttons::Ok);
  }

  void XrfVoltage(std::string_view line) {
    std::string_view rest = line, current, unused, voltage;
    if (!CutLast(rest, current) || !CutLast(rest, unused) || !CutLast(rest, voltage)) return;
    std::string text(voltage);
    text += " kV ";
    text += current;
    text += " mA";
    Store(section_.XrfVoltText, text);
  }

  void Coordinates(std::string_view line, float& first, float& last) {
    std::string_view second, end, rest = line;
    if (!SecondField(line, second)) return;
    Depth(second, first);
    if (CutLast(rest, end)) Depth(end, last);
  }

  // A depth in mm; "inf", "nan" or a number no core reaches would put the whole plot
  // out of reach of the depth scale, so it is refused and the old value stays.
  void Depth(std::string_view text, float& depth) {
    float value = 0;
    if (!ScanFloat(text, value)) return;
    if (std::isfinite(value) && std::fabs(value) <= kMaxDepthMm) depth = value;
    else Refuse(msg::kBadCoordinate, text);
  }

  Model& model_;
  Prompt& prompt_;
  CoreSection& section_;
  WorkingBlock& work_;
  const CoreSection* previous_ = nullptr;
  int32_t cameraSwitch_ = 0;
};

// Places the optical image on the depth axis from the optical coordinates.  AxisLength
// still holds the previous load's value here, so the first load after New leaves the
// image where it is.
void PlaceOpticalImage(Model& model) {
  const WorkingBlock& work = model.Work();
  OpticalImageDesc& optical = model.CurOptical();
  const int32_t n = optical.Length();
  const float axis = model.Plot().AxisLength;
  if (!(work.OpticalEnd > 0) || n < 1 || !(axis > 0)) return;
  const float a = model.CurSection().StartDepth - work.OpticalStart;
  const float b = work.OpticalEnd - work.OpticalStart;
  if (b == 0) return;  // no optical length to scale by
  if (a > 0) optical.FirstShownPixel = RoundToInt(a * float(n) / b);
  int32_t last = RoundToInt(float(n) * axis / b);
  last = int32_t(std::min<int64_t>(int64_t(last) + optical.FirstShownPixel, n - 1));
  optical.LastShownPixel = last;
}

}  // namespace

int ParseSectionMetadata(Model& model, Prompt& prompt, std::string_view text, bool warn) {
  if (text.size() > kDocumentReadLimit) text = text.substr(0, kDocumentReadLimit);
  // The text ends at its first NUL, as a C string would.
  const size_t nul = text.find('\0');
  if (nul != std::string_view::npos) text = text.substr(0, nul);

  MetadataParser(model, prompt, warn).Run(text);
  PlaceOpticalImage(model);

  PlotState& plot = model.Plot();
  CopyField(plot.CoreTitle, model.CurSection().CoreName);
  // The header is measured by the plot when it next paints.
  plot.HeaderNeedsLayout = 1;
  plot.HeaderScroll = 0;
  plot.HeaderLineCount = 11;
  return 1;
}

int ReadSectionMetadata(Model& model, Prompt& prompt, bool warn) {
  const std::filesystem::path path = std::filesystem::path(model.Settings().SectionFolder) / "document.txt";
  std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.string().c_str(), "rb"), &std::fclose);
  if (!file) {
    prompt.Message(msg::kDocumentNotFound, "", Icon::Information, Buttons::Ok);
    CoreSection& section = model.CurSection();
    section.ScanYear = 2000;
    section.ScanMonth = 1;
    section.ScanDay = 1;
    CopyField(section.SectionName, Format("%d", model.Plot().CurSectionIndex + 1).c_str());
    model.RequestRepaint();
    return 0;
  }
  char buffer[kDocumentReadLimit];
  const size_t got = std::fread(buffer, 1, sizeof buffer, file.get());
  file.reset();
  return ParseSectionMetadata(model, prompt, std::string_view(buffer, got), warn);
}

}  // namespace sedra
