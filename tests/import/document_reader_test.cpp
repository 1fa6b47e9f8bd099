// document.txt: every caption the scanner writes, the 8192-byte limit, short lines,
// kept oddities, the change warnings and the not-found case.

#include "import/document_reader.h"

#include <cstring>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/messages.h"
#include "model/model.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

using test::ScriptedPrompt;

struct DocumentCase {
  const char* Name;
  std::string Text;
  std::function<void(const Model&)> Check;
};

std::string Crlf(std::initializer_list<const char*> lines) {
  std::string s;
  for (const char* l : lines) (s += l) += "\r\n";
  return s;
}

const CoreSection& Sec(const Model& m) { return m.CurSection(); }

class DocumentTable : public ::testing::TestWithParam<DocumentCase> {};

TEST_P(DocumentTable, StoresWhatTheCaptionsSay) {
  Model model;
  ScriptedPrompt prompt;
  CopyField(model.CurSection().SiteName, "old site");
  CopyField(model.CurSection().CoreName, "old core");
  model.CurSection().ScanYear = 1999;
  EXPECT_EQ(ParseSectionMetadata(model, prompt, GetParam().Text, false), 1);
  GetParam().Check(model);
  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_EQ(model.Plot().HeaderLineCount, 11);
  EXPECT_EQ(model.Plot().HeaderNeedsLayout, 1u);
}

const std::string kFull = Crlf({"Station\tCore\tSection\tSample ID", "Kingsport Bay\tKB-07\t3\tKB07-03", "Year\tMonth\tDay",
                                "2024 3 18", "Tube Voltage\t30\tkV\tset", "Tube Current\t25\tmA\tset",
                                "Exposure\t500\tms\tset", "Line camera\t1\ton\tset", "Step size\t200\tmicrons\tset",
                                "XRF exposure\t10\ts\tset", "XRF voltage\t45\tkV\t20", "Tube\tMo\tfine focus",
                                "Start coordinate\t100.5\tEnd coordinate\t400.25", "Optical Start\t95\tOptical End\t405"});

INSTANTIATE_TEST_SUITE_P(
    Keys, DocumentTable,
    ::testing::Values(
        DocumentCase{"EveryKey", kFull,
                     [](const Model& m) {
                       const CoreSection& s = Sec(m);
                       EXPECT_STREQ(s.SiteName, "Kingsport Bay");
                       EXPECT_STREQ(s.CoreName, "KB-07");
                       EXPECT_STREQ(s.SectionName, "3");
                       EXPECT_STREQ(s.IdField4, "KB07-03");
                       EXPECT_EQ(s.ScanYear, 2024);
                       EXPECT_EQ(s.ScanMonth, 3);
                       EXPECT_EQ(s.ScanDay, 18);
                       EXPECT_STREQ(s.TubeSettingsText, "30 kV 25 mA");
                       EXPECT_EQ(s.TubeVoltage, 30);
                       EXPECT_EQ(s.TubeCurrent, 25);
                       EXPECT_EQ(s.Exposure, 500);
                       EXPECT_STREQ(s.ExposureText, "ms");
                       EXPECT_STREQ(s.CameraText, "1 on");
                       EXPECT_STREQ(s.StepSizeText, "200 microns");
                       EXPECT_STREQ(s.XrfExposureText, "10 s");
                       EXPECT_STREQ(s.XrfVoltText, "45 kV 20 mA");
                       EXPECT_STREQ(s.TubeText, "Mo");
                       EXPECT_FLOAT_EQ(m.App.Work.StartCoordinate, 100.5f);
                       EXPECT_FLOAT_EQ(m.App.Work.EndCoordinate, 400.25f);
                       EXPECT_FLOAT_EQ(m.App.Work.OpticalStart, 95.0f);
                       EXPECT_FLOAT_EQ(m.App.Work.OpticalEnd, 405.0f);
                       EXPECT_STREQ(m.Plot().CoreTitle, "KB-07");
                     }},
        DocumentCase{"SiteNameKeepsItsTabs", Crlf({"Base path", "North\tBay\tKB-07\t3\tid"}),
                     [](const Model& m) {
                       EXPECT_STREQ(Sec(m).SiteName, "North\tBay");
                       EXPECT_STREQ(Sec(m).CoreName, "KB-07");
                     }},
        DocumentCase{"ShortIdentificationLineStoresWhatItReaches", Crlf({"Station", "KB-07\t3\tid"}),
                     [](const Model& m) {
                       EXPECT_STREQ(Sec(m).IdField4, "id");
                       EXPECT_STREQ(Sec(m).SectionName, "3");
                       EXPECT_STREQ(Sec(m).CoreName, "old core");
                       EXPECT_STREQ(Sec(m).SiteName, "old site");
                     }},
        DocumentCase{"HeaderAsLastLineStoresNothing", "Tube\tW\r\nStation\tCore",
                     [](const Model& m) {
                       EXPECT_STREQ(Sec(m).SiteName, "old site");
                       EXPECT_STREQ(Sec(m).TubeText, "W");
                     }},
        DocumentCase{"YearAsLastLineStoresNothing", "Year\r\n\r\n",
                     [](const Model& m) { EXPECT_EQ(Sec(m).ScanYear, 1999); }},
        DocumentCase{"DateStopsAtTheFirstMissingNumber", Crlf({"Year", "2023 x 5"}),
                     [](const Model& m) {
                       EXPECT_EQ(Sec(m).ScanYear, 2023);
                       EXPECT_EQ(Sec(m).ScanMonth, 0);
                       EXPECT_EQ(Sec(m).ScanDay, 0);
                     }},
        DocumentCase{"VoltageLineWithoutItsLastFieldIsIgnored", Crlf({"Tube Voltage\t30\tkV"}),
                     [](const Model& m) {
                       EXPECT_EQ(Sec(m).TubeVoltage, 0);
                       EXPECT_STREQ(Sec(m).TubeSettingsText, "");
                     }},
        DocumentCase{"StepSizeAfterOpticalEndIsTheOpticalStep",
                     Crlf({"camera\t1\ton\tx", "Optical Start\t10\tOptical End\t20", "Step size\t50\tmicrons\tx"}),
                     [](const Model& m) {
                       EXPECT_FLOAT_EQ(m.App.Work.OpticalStepSize, 50.0f);
                       EXPECT_STREQ(Sec(m).StepSizeText, "");
                     }},
        DocumentCase{"StepSizeNeedsTheCamera", Crlf({"camera\t0\toff\tx", "Step size\t200\tmicrons\tx"}),
                     [](const Model& m) { EXPECT_STREQ(Sec(m).StepSizeText, ""); }},
        DocumentCase{"SecondStepSizeLineGoesOnToTheXrfKeys",
                     Crlf({"camera\t1\ton\tx", "Step size\t200\tum\tx", "Step size XRF exp\t7\ts\tx"}),
                     [](const Model& m) {
                       EXPECT_STREQ(Sec(m).StepSizeText, "200 um");
                       EXPECT_STREQ(Sec(m).XrfExposureText, "7 s");
                     }},
        DocumentCase{"FirstKeyInTableOrderDecides", Crlf({"Tube Voltage Current\t40\tkV\tx", "Year Station\t1\t2\t3", "a\tb\tc\td"}),
                     [](const Model& m) {
                       EXPECT_EQ(Sec(m).TubeVoltage, 40);
                       EXPECT_EQ(Sec(m).TubeCurrent, 0);
                       EXPECT_STREQ(Sec(m).CoreName, "b");  // "Station" is tried before "Year"
                       EXPECT_EQ(Sec(m).ScanYear, 1999);
                     }},
        DocumentCase{"CaptionsAreCaseSensitive", Crlf({"tube voltage\t40\tkV\tx", "Camera\t1\ton\tx"}),
                     [](const Model& m) {
                       EXPECT_EQ(Sec(m).TubeVoltage, 0);
                       EXPECT_STREQ(Sec(m).CameraText, "");
                     }},
        DocumentCase{"LoneCrAndLfSeparateLines", "Tube\tW\rExposure\t9\ts\tx\nYear\n\n\r2001 2 3",
                     [](const Model& m) {
                       EXPECT_STREQ(Sec(m).TubeText, "W");
                       EXPECT_EQ(Sec(m).Exposure, 9);
                       EXPECT_EQ(Sec(m).ScanYear, 2001);
                     }},
        DocumentCase{"LongTextsAreCutToTheirFields",
                     Crlf({"Station", (std::string(100, 'S') + "\tcore\tsec\t" + std::string(40, 'I')).c_str(),
                           ("Tube\t" + std::string(50, 'T')).c_str()}),
                     [](const Model& m) {
                       EXPECT_EQ(std::string(Sec(m).SiteName), std::string(63, 'S'));
                       EXPECT_EQ(std::string(Sec(m).IdField4), std::string(31, 'I'));
                       EXPECT_EQ(std::string(Sec(m).TubeText), std::string(31, 'T'));
                     }},
        DocumentCase{"NumbersWithoutDigitsLeaveTheFields", Crlf({"Start coordinate\tabc\tEnd\t12.5"}),
                     [](const Model& m) {
                       EXPECT_FLOAT_EQ(m.App.Work.StartCoordinate, 0.0f);
                       EXPECT_FLOAT_EQ(m.App.Work.EndCoordinate, 12.5f);
                     }}),
    [](const auto& info) { return std::string(info.param.Name); });

TEST(DocumentReader, ReadsOnlyTheFirst8192Bytes) {
  // A filler line, then "Tube\tABCD" placed so that the limit falls after "AB".
  std::string text = "x" + std::string(8192 - 1 - 2 - 7, 'y') + "\r\n";
  text += "Tube\tABCD\r\nExposure\t5\ts\tx\r\n";
  ASSERT_EQ(text.find("CD"), 8192u);
  Model model;
  ScriptedPrompt prompt;
  ParseSectionMetadata(model, prompt, text, false);
  EXPECT_STREQ(model.CurSection().TubeText, "AB");
  EXPECT_EQ(model.CurSection().Exposure, 0);
}

TEST(DocumentReader, ReadingTheSameSectionTwiceRepeatsTheExposureUnit) {
  Model model;
  ScriptedPrompt prompt;
  ParseSectionMetadata(model, prompt, kFull, false);
  ParseSectionMetadata(model, prompt, kFull, false);
  EXPECT_STREQ(model.CurSection().ExposureText, "msms");
  EXPECT_STREQ(model.CurSection().TubeSettingsText, "30 kV 25 mA");
}

TEST(DocumentReader, EachReadClearsTheStepTextAndOpticalEnd) {
  Model model;
  ScriptedPrompt prompt;
  ParseSectionMetadata(model, prompt, kFull, false);
  ParseSectionMetadata(model, prompt, "Tube\tW\r\n", false);
  EXPECT_STREQ(model.CurSection().StepSizeText, "");
  EXPECT_EQ(model.App.Work.OpticalEnd, 0.0f);
}

struct WarningCase {
  bool Warn;
  uint32_t ShowWarnings;
  int Section;
  std::vector<std::string> Expected;
};

class DocumentWarnings : public ::testing::TestWithParam<WarningCase> {};

TEST_P(DocumentWarnings, ComparedWithThePreviousSectionOnlyWhenAsked) {
  const WarningCase& c = GetParam();
  Model model;
  ScriptedPrompt prompt;
  model.Settings().ShowWarnings = c.ShowWarnings;
  CoreSection& previous = model.Section(0);
  previous.TubeVoltage = 30;  // same as the file
  previous.TubeCurrent = 20;
  previous.Exposure = 400;
  CopyField(previous.TubeText, "W");
  model.Plot().CurSectionIndex = c.Section;
  ParseSectionMetadata(model, prompt, kFull, c.Warn);
  EXPECT_EQ(prompt.Texts(), c.Expected);
  for (const auto& m : prompt.Messages) {
    EXPECT_EQ(m.Caption, "");
    EXPECT_EQ(m.ButtonSet, Buttons::Ok);
  }
}

INSTANTIATE_TEST_SUITE_P(Flags, DocumentWarnings,
                         ::testing::Values(WarningCase{true, 1, 1, {msg::kWarnCurrent, msg::kWarnExposure, msg::kWarnTube}},
                                           WarningCase{false, 1, 1, {}}, WarningCase{true, 0, 1, {}},
                                           WarningCase{true, 1, 0, {}}));

TEST(DocumentReader, NotFoundTellsTheUserAndFillsDefaults) {
  Model model;
  ScriptedPrompt prompt;
  const auto folder = test::ScratchFolder();
  CopyField(model.Settings().SectionFolder, folder.string().c_str());
  model.Plot().CurSectionIndex = 4;
  CopyField(model.CurSection().CoreName, "kept");
  int repaints = 0;
  model.Invalidate = [&] { ++repaints; };
  EXPECT_EQ(ReadSectionMetadata(model, prompt, false), 0);
  ASSERT_EQ(prompt.Messages.size(), 1u);
  EXPECT_EQ(prompt.Messages[0].Text, msg::kDocumentNotFound);
  EXPECT_EQ(prompt.Messages[0].Caption, "");
  EXPECT_EQ(prompt.Messages[0].IconKind, Icon::Information);
  const CoreSection& s = model.CurSection();
  EXPECT_EQ(s.ScanYear, 2000);
  EXPECT_EQ(s.ScanMonth, 1);
  EXPECT_EQ(s.ScanDay, 1);
  EXPECT_STREQ(s.SectionName, "5");
  EXPECT_STREQ(s.CoreName, "kept");
  EXPECT_EQ(repaints, 1);
}

TEST(DocumentReader, ReadsTheGeneratedFileFromTheSectionFolder) {
  const auto folder = test::ScratchFolder();
  test::MakeSampleCore(folder, "--section 4 --step 250 --cr-only --raw-values 0");
  Model model;
  ScriptedPrompt prompt;
  CopyField(model.Settings().SectionFolder, folder.string().c_str());
  EXPECT_EQ(ReadSectionMetadata(model, prompt, false), 1);
  EXPECT_STREQ(model.CurSection().SectionName, "4");
  EXPECT_STREQ(model.CurSection().StepSizeText, "250 microns");
  EXPECT_STREQ(model.CurSection().TubeText, "Mo");
  EXPECT_FLOAT_EQ(model.App.Work.StartCoordinate, 100.0f);
  EXPECT_FLOAT_EQ(model.App.Work.EndCoordinate, 475.0f);  // 1500 px x 0.25 mm
}

struct PlacementCase {
  float AxisLength, StartDepth, OpticalStart, OpticalEnd;
  int32_t Length, First, ExpectFirst, ExpectLast;
};

class OpticalPlacement : public ::testing::TestWithParam<PlacementCase> {};

TEST_P(OpticalPlacement, FromTheOpticalCoordinates) {
  const PlacementCase& c = GetParam();
  Model model;
  ScriptedPrompt prompt;
  model.Plot().AxisLength = c.AxisLength;
  model.CurSection().StartDepth = c.StartDepth;
  model.CurOptical().Height = c.Length;
  model.CurOptical().FirstShownPixel = c.First;
  model.CurOptical().LastShownPixel = -7;
  const std::string text = "Optical Start\t" + std::to_string(c.OpticalStart) + "\tEnd\t" + std::to_string(c.OpticalEnd) + "\r\n";
  ParseSectionMetadata(model, prompt, text, false);
  EXPECT_EQ(model.CurOptical().FirstShownPixel, c.ExpectFirst);
  EXPECT_EQ(model.CurOptical().LastShownPixel, c.ExpectLast);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, OpticalPlacement,
    ::testing::Values(
        // a = 100 - 95 = 5, b = 310: first = round(5 * 1550 / 310) = 25; last = round(1550 * 300 / 310) + 25 = 1525.
        PlacementCase{300, 100, 95, 405, 1550, 0, 25, 1525},
        // The optical image starts below the section start: first stays, last limited to n - 1.
        PlacementCase{400, 90, 95, 405, 1550, 3, 3, 1549},
        // First load after New: no axis yet, nothing moves.
        PlacementCase{0, 100, 95, 405, 1550, 0, 0, -7},
        // No optical image.
        PlacementCase{300, 100, 95, 405, 0, 0, 0, -7}));

}  // namespace
}  // namespace sedra
