// document.txt: every caption the scanner writes, the 8192-byte limit, short lines,
// kept oddities, decimal points under any locale, the change warnings and the not-found case.

#include "import/document_reader.h"

#include <map>
#include <sstream>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/messages.h"
#include "support/german_numbers.h"

namespace sedra {
namespace {

using DocumentReader = test::ReaderTest;
using FieldMap = std::map<std::string, std::string>;

std::string Crlf(std::initializer_list<std::string> lines) {
  std::string s;
  for (const std::string& l : lines) (s += l) += "\r\n";
  return s;
}

// Every field the reader fills, as text, so that a case lists only those it expects.
FieldMap Fields(const Model& m) {
  const CoreSection& s = m.CurSection();
  const WorkingBlock& w = m.App.Work;
  auto n = [](auto v) {
    std::ostringstream out;
    out << v;
    return out.str();
  };
  return {{"Site", s.SiteName}, {"Core", s.CoreName}, {"Section", s.SectionName}, {"Id", s.IdField4},
          {"Year", n(s.ScanYear)}, {"Month", n(s.ScanMonth)}, {"Day", n(s.ScanDay)},
          {"TubeSettings", s.TubeSettingsText}, {"Voltage", n(s.TubeVoltage)}, {"Current", n(s.TubeCurrent)},
          {"Exposure", n(s.Exposure)}, {"ExposureText", s.ExposureText}, {"Camera", s.CameraText},
          {"Step", s.StepSizeText}, {"XrfExposure", s.XrfExposureText}, {"XrfVolt", s.XrfVoltText},
          {"Tube", s.TubeText}, {"Start", n(w.StartCoordinate)}, {"End", n(w.EndCoordinate)},
          {"OpticalStart", n(w.OpticalStart)}, {"OpticalEnd", n(w.OpticalEnd)},
          {"OpticalStep", n(w.OpticalStepSize)}, {"Title", m.Plot().CoreTitle},
          {"FirstShown", n(s.Optical.FirstShownPixel)}, {"LastShown", n(s.Optical.LastShownPixel)}};
}

const std::string kFull =
    Crlf({"Station\tCore\tSection\tSample ID", "Kingsport Bay\tKB-07\t3\tKB07-03", "Year\tMonth\tDay", "2024 3 18",
          "Tube Voltage\t30\tkV\tset", "Tube Current\t25\tmA\tset", "Exposure\t500\tms\tset", "Line camera\t1\ton\tset",
          "Step size\t200\tmicrons\tset", "XRF exposure\t10\ts\tset", "XRF voltage\t45\tkV\t20", "Tube\tMo\tfine focus",
          "Start coordinate\t100.5\tEnd coordinate\t400.25", "Optical Start\t95\tOptical End\t405"});

struct DocumentCase {
  const char* Name;
  std::string Text;
  FieldMap Expect;
  // The depth axis and the optical image the section has before the read.
  float AxisLength = 0, StartDepth = 0;
  int32_t OpticalRows = 0, FirstShown = 0;
};

class DocumentTable : public test::ReaderTest, public ::testing::WithParamInterface<DocumentCase> {};

// Each text is read over the full document read before, so what a text leaves keeps the
// full document's value.  Under a German desktop's locale: the file keeps its decimal
// point all the same.
TEST_P(DocumentTable, StoresWhatTheCaptionsSay) {
  test::GermanNumbers german;
  ASSERT_TRUE(german.Active());
  ParseSectionMetadata(model, prompt, kFull, false);
  const DocumentCase& c = GetParam();
  std::tie(model.Plot().AxisLength, model.CurSection().StartDepth) = std::tuple(c.AxisLength, c.StartDepth);
  OpticalImageDesc& opt = model.CurOptical();
  std::tie(opt.Height, opt.FirstShownPixel, opt.LastShownPixel) = std::tuple(c.OpticalRows, c.FirstShown, -7);
  EXPECT_EQ(ParseSectionMetadata(model, prompt, c.Text, false), 1);
  const FieldMap got = Fields(model);
  for (const auto& [key, value] : c.Expect) EXPECT_EQ(got.at(key), value) << key;
  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_EQ(model.Plot().HeaderNeedsLayout, 1u);
}

const std::string kOptical = "Optical Start\t95\tEnd\t405\r\n";

INSTANTIATE_TEST_SUITE_P(
    Keys, DocumentTable,
    ::testing::Values(
        // Read again, the exposure unit is appended once more, as users have seen for years.
        DocumentCase{"EveryKey", kFull,
                     {{"Site", "Kingsport Bay"}, {"Core", "KB-07"}, {"Section", "3"}, {"Id", "KB07-03"},
                      {"Year", "2024"}, {"Month", "3"}, {"Day", "18"}, {"TubeSettings", "30 kV 25 mA"},
                      {"Voltage", "30"}, {"Current", "25"}, {"Exposure", "500"}, {"ExposureText", "msms"},
                      {"Camera", "1 on"}, {"Step", "200 microns"}, {"XrfExposure", "10 s"},
                      {"XrfVolt", "45 kV 20 mA"}, {"Tube", "Mo"}, {"Start", "100.5"}, {"End", "400.25"},
                      {"OpticalStart", "95"}, {"OpticalEnd", "405"}, {"Title", "KB-07"}}},
        DocumentCase{"SiteNameKeepsItsTabs", Crlf({"Base path", "North\tBay\tKB-08\t3\tid"}),
                     {{"Site", "North\tBay"}, {"Core", "KB-08"}}},
        DocumentCase{"ShortLinesStoreWhatTheyReach", Crlf({"Station", "KB-09\t5\tid", "Year", "2023 x 5"}),
                     {{"Id", "id"}, {"Section", "5"}, {"Core", "KB-07"}, {"Site", "Kingsport Bay"}, {"Year", "2023"},
                      {"Month", "3"}, {"Day", "18"}}},
        // A value line without its last field, a caption in other case, a number without digits.
        DocumentCase{"LinesThatDoNotFitLeaveTheFields",
                     Crlf({"Tube Voltage\t40\tkV", "tube voltage\t40\tkV\tx", "Camera\t2\toff\tx",
                           "Start coordinate\tabc\tEnd\t12.5"}),
                     {{"Voltage", "30"}, {"TubeSettings", "30 kV 25 mA"}, {"Camera", "1 on"}, {"Start", "100.5"},
                      {"End", "12.5"}}},
        DocumentCase{"StepSizeAfterOpticalEndIsTheOpticalStep",
                     Crlf({"camera\t1\ton\tx", "Optical Start\t10\tOptical End\t20", "Step size\t50\tmicrons\tx"}),
                     {{"OpticalStep", "50"}, {"Step", ""}}},
        // Every read starts without a step text and without an optical end.
        DocumentCase{"StepSizeNeedsTheCamera", Crlf({"camera\t0\toff\tx", "Step size\t200\tmicrons\tx"}),
                     {{"Step", ""}}},
        DocumentCase{"SecondStepSizeLineGoesOnToTheXrfKeys",
                     Crlf({"camera\t1\ton\tx", "Step size\t300\tum\tx", "Step size XRF exp\t7\ts\tx"}),
                     {{"Step", "300 um"}, {"XrfExposure", "7 s"}, {"OpticalEnd", "0"}}},
        // "Station" is tried before "Year", "Voltage" before "Current".
        DocumentCase{"FirstKeyInTableOrderDecides",
                     Crlf({"Tube Voltage Current\t40\tkV\tx", "Year Station\t1\t2\t3", "a\tb\tc\td"}),
                     {{"Voltage", "40"}, {"Current", "25"}, {"Core", "b"}, {"Year", "2024"}}},
        DocumentCase{"LoneCrAndLfSeparateLines", "Tube\tW\rExposure\t9\ts\tx\nYear\n\n\r2001 2 3",
                     {{"Tube", "W"}, {"Exposure", "9"}, {"Year", "2001"}}},
        DocumentCase{"LongTextsAreCutToTheirFields",
                     Crlf({"Station", std::string(100, 'S') + "\tcore\tsec\t" + std::string(40, 'I'), "Tube\t" + std::string(50, 'T')}),
                     {{"Site", std::string(63, 'S')}, {"Id", std::string(31, 'I')}, {"Tube", std::string(31, 'T')}}},
        // A filler line, then "Tube\tABCD" placed so that the limit falls after "AB".
        DocumentCase{"ReadsOnlyTheFirst8192Bytes", "x" + std::string(8192 - 10, 'y') + "\r\nTube\tABCD\r\nExposure\t5\ts\tx\r\n",
                     {{"Tube", "AB"}, {"Exposure", "500"}}},
        // The optical image's shown rows follow the optical coordinates along the depth axis:
        // a = 100 - 95 = 5, b = 310: first = round(5 * 1550 / 310) = 25; last = round(1550 * 300 / 310) + 25.
        DocumentCase{"OpticalPlaced", kOptical, {{"FirstShown", "25"}, {"LastShown", "1525"}}, 300, 100, 1550, 0},
        // Starting below the section start: the first row stays, the last is limited to n - 1.
        DocumentCase{"OpticalBelowTheStart", kOptical, {{"FirstShown", "3"}, {"LastShown", "1549"}}, 400, 90, 1550, 3},
        // The first load after New has no axis yet, and without an optical image nothing moves.
        DocumentCase{"OpticalWithoutAxis", kOptical, {{"FirstShown", "0"}, {"LastShown", "-7"}}, 0, 100, 1550, 0},
        DocumentCase{"NoOpticalImage", kOptical, {{"FirstShown", "0"}, {"LastShown", "-7"}}, 300, 100, 0, 0}),
    [](const auto& info) { return std::string(info.param.Name); });

// The settings' switch, the caller's wish and a previous section must all be there.
TEST_F(DocumentReader, ChangesAreComparedWithThePreviousSectionOnlyWhenAsked) {
  const struct {
    bool Warn;
    uint32_t ShowWarnings;
    int Section;
    std::vector<std::string> Expected;
  } rows[] = {{true, 1, 1, {msg::kWarnCurrent, msg::kWarnExposure, msg::kWarnTube}},
              {false, 1, 1, {}},
              {true, 0, 1, {}},
              {true, 1, 0, {}}};
  CoreSection& previous = model.Section(0);
  // The voltage as in the file; the current, the exposure and the tube not.
  std::tie(previous.TubeVoltage, previous.TubeCurrent, previous.Exposure) = std::tuple(30, 20, 400);
  CopyField(previous.TubeText, "W");
  for (const auto& r : rows) {
    prompt.Messages.clear();
    model.Settings().ShowWarnings = r.ShowWarnings;
    model.Plot().CurSectionIndex = r.Section;
    ParseSectionMetadata(model, prompt, kFull, r.Warn);
    EXPECT_EQ(prompt.Texts(), r.Expected) << r.Warn << r.ShowWarnings << r.Section;
    for (const auto& m : prompt.Messages) EXPECT_EQ(m.ButtonSet, Buttons::Ok);
  }
}

// Reading the file itself is what the read commands do (tests/images).
TEST_F(DocumentReader, NotFoundTellsTheUserAndFillsDefaults) {
  CopyField(model.Settings().SectionFolder, test::ScratchFolder().string().c_str());
  model.Plot().CurSectionIndex = 4;
  CopyField(model.CurSection().CoreName, "kept");
  int repaints = 0;
  model.Invalidate = [&] { ++repaints; };
  EXPECT_EQ(ReadSectionMetadata(model, prompt, false), 0);
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kDocumentNotFound});
  EXPECT_EQ(prompt.Messages[0].IconKind, Icon::Information);
  const FieldMap got = Fields(model);
  for (const auto& [key, value] :
       FieldMap{{"Year", "2000"}, {"Month", "1"}, {"Day", "1"}, {"Section", "5"}, {"Core", "kept"}})
    EXPECT_EQ(got.at(key), value) << key;
  EXPECT_EQ(repaints, 1);
}

}  // namespace
}  // namespace sedra
