// sedra-render: paints the composite plot of a section folder, or of a whole core of
// several section folders, without a display.
//
//   sedra-render SECTION_FOLDER... [--optical] [--raw FILE --maxres|--highres]
//                [--page WxH] [--dpi N] [--zoom F] [--scroll Y] [--expand TOP:BOTTOM]
//                [--overlay or|and] -o OUT.png|OUT.pdf
//
// The section is read as the menu commands read it (radiograph, optical image,
// document.txt, menu state).  Further folders are added as "Add Core Section" adds
// them, in the order given (each with its folder's optical image when it has one), and
// the whole core is painted end to end as "Display All" shows it.  Every message the desktop would show in a box goes to
// stderr with the same text.  A PNG is painted like the main window (96 dpi unless
// told), a PDF like a printed page (vector text and lines, images embedded).

#include <QGuiApplication>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "images/load.h"
#include "images/whole_core.h"
#include "model/core.h"
#include "model/file_replace.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"
#include "model/settings_blocks.h"
#include "model/settings_files.h"
#include "output/qt/replacing_device.h"
#include "plot/fonts.h"
#include "plot/paint_plot.h"

namespace {

const char* const kUsage =
    "usage: sedra-render SECTION_FOLDER... [--optical] [--raw FILE --maxres|--highres]\n"
    "                    [--page WxH] [--dpi N] [--zoom F] [--scroll Y] [--expand TOP:BOTTOM]\n"
    "                    [--overlay or|and] -o OUT.png|OUT.pdf\n";

// Answers the readers' file choosers with the files of the section folder, one queued
// name per request, and writes every message to stderr.
class FolderPrompt : public sedra::Prompt {
 public:
  std::deque<std::filesystem::path> Files;
  int Messages = 0;

  sedra::Answer Message(const std::string& text, const std::string&, sedra::Icon, sedra::Buttons buttons) override {
    std::fprintf(stderr, "%s\n", text.c_str());
    ++Messages;
    // No one is there to say no: questions go on as the user who ran the tool asked.
    if (buttons == sedra::Buttons::YesNo || buttons == sedra::Buttons::YesNoCancel) return sedra::Answer::Yes;
    return sedra::Answer::Ok;
  }
  sedra::FileChoice OpenFile(const sedra::FileRequest&) override {
    sedra::FileChoice choice;
    if (Files.empty()) return choice;
    choice.Accepted = true;
    choice.Path = Files.front().string();
    Files.pop_front();
    return choice;
  }
  sedra::FileChoice SaveFile(const sedra::FileRequest&) override { return {}; }
};

struct Options {
  std::filesystem::path Folder;                  // the first section
  std::vector<std::filesystem::path> MoreFolders;  // the sections after it, in order
  bool Optical = false;
  std::string Raw;
  bool MaxRes = false, RawResChosen = false;
  int PageWidth = 0, PageHeight = 0;
  int Dpi = 0;
  int Zoom = 1;
  int Scroll = 0;
  bool Expand = false;
  double ExpandTop = 0, ExpandBottom = 0;
  int Overlay = 0;  // 1 OR, 2 AND
  std::filesystem::path Out;
};

int Fail(const char* text) {
  std::fprintf(stderr, "sedra-render: %s\n%s", text, kUsage);
  return 2;
}

bool ParseInt(const char* s, int& out) {
  char* end = nullptr;
  const long v = std::strtol(s, &end, 10);
  if (end == s || *end != '\0' || v < -1000000000L || v > 1000000000L) return false;
  out = int(v);
  return true;
}

// Returns 0 when the options were read, else the exit status.
int ParseOptions(int argc, char** argv, Options& o) {
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    auto value = [&](const char*& v) {
      if (i + 1 >= argc) return false;
      v = argv[++i];
      return true;
    };
    const char* v = nullptr;
    if (a == "--optical") {
      o.Optical = true;
    } else if (a == "--raw") {
      if (!value(v)) return Fail("--raw needs a file");
      o.Raw = v;
    } else if (a == "--maxres" || a == "--highres") {
      o.MaxRes = a == "--maxres";
      o.RawResChosen = true;
    } else if (a == "--page") {
      if (!value(v) || std::sscanf(v, "%dx%d", &o.PageWidth, &o.PageHeight) != 2 || o.PageWidth < 1 ||
          o.PageHeight < 1 || o.PageWidth > 30000 || o.PageHeight > 30000)
        return Fail("--page needs WIDTHxHEIGHT in pixels");
    } else if (a == "--dpi") {
      if (!value(v) || !ParseInt(v, o.Dpi) || o.Dpi < 24 || o.Dpi > 2400) return Fail("--dpi needs 24..2400");
    } else if (a == "--zoom") {
      double f = 0;
      if (!value(v) || std::sscanf(v, "%lf", &f) != 1) return Fail("--zoom needs 1, 2, 4, 8, 16 or 32");
      o.Zoom = int(f);
      if (o.Zoom != 1 && o.Zoom != 2 && o.Zoom != 4 && o.Zoom != 8 && o.Zoom != 16 && o.Zoom != 32)
        return Fail("--zoom needs 1, 2, 4, 8, 16 or 32");
    } else if (a == "--scroll") {
      if (!value(v) || !ParseInt(v, o.Scroll) || o.Scroll < 0) return Fail("--scroll needs a position >= 0");
    } else if (a == "--expand") {
      if (!value(v) || std::sscanf(v, "%lf:%lf", &o.ExpandTop, &o.ExpandBottom) != 2)
        return Fail("--expand needs TOP:BOTTOM in mm");
      o.Expand = true;
    } else if (a == "--overlay") {
      if (!value(v)) return Fail("--overlay needs or or and");
      const std::string m = v;
      if (m == "or") o.Overlay = 1;
      else if (m == "and") o.Overlay = 2;
      else return Fail("--overlay needs or or and");
    } else if (a == "-o") {
      if (!value(v)) return Fail("-o needs a file");
      o.Out = v;
    } else if (!a.empty() && a[0] == '-') {
      return Fail(("unknown option " + a).c_str());
    } else if (o.Folder.empty()) {
      o.Folder = a;
    } else if (o.MoreFolders.size() + 1 < size_t(sedra::kMaxSections)) {
      o.MoreFolders.push_back(a);
    } else {
      return Fail("a core has at most 12 section folders");
    }
  }
  if (o.Folder.empty()) return Fail("no section folder");
  if (o.Out.empty()) return Fail("no output file (-o)");
  if (!o.Raw.empty() && !o.RawResChosen) return Fail("--raw needs --maxres or --highres");
  const std::string ext = o.Out.extension().string();
  if (ext != ".png" && ext != ".pdf") return Fail("the output must end in .png or .pdf");
  return 0;
}

// The "Expand" button of the expanded-display dialog, with its refusal.
bool ApplyExpand(sedra::Model& model, FolderPrompt& prompt, double top, double bottom) {
  sedra::PlotState& plot = model.Plot();
  sedra::CoreSection& sec = model.CurSection();
  const float length = plot.SectionLength[model.CurSectionSlot()];
  plot.ExpandTop = float(top - sec.StartLabelDepth);
  plot.ExpandBottom = std::min(float(bottom - sec.StartLabelDepth), length);
  if (plot.ExpandBottom - plot.ExpandTop < 0.05f * length) {
    prompt.Tell(sedra::msg::kExpandTooSmall, "", sedra::Icon::Exclamation);
    return false;
  }
  plot.DepthSpan = plot.ExpandBottom - plot.ExpandTop;
  plot.ViewFirstPoint = std::max(0, sedra::RoundToInt(double(sec.PointCount) * plot.ExpandTop / length));
  plot.ViewLastPoint = std::min(sec.PointCount, sedra::RoundToInt(double(sec.PointCount) * plot.ExpandBottom / length));
  plot.NeedLayout = 1;
  plot.Expanded = 1;
  plot.ZoomFactor = 1;
  return true;
}

// A file named on the command line: as given when it is there, else in the section
// folder ("--raw radiograph.raw" names the folder's own file).
std::filesystem::path SectionFile(const Options& o, const std::filesystem::path& file) {
  std::error_code ec;
  if (file.is_relative() && !std::filesystem::exists(file, ec)) return std::filesystem::absolute(o.Folder / file, ec);
  return std::filesystem::absolute(file, ec);
}

bool Load(sedra::Model& model, FolderPrompt& prompt, const Options& o) {
  if (!o.Raw.empty()) {
    prompt.Files.push_back(SectionFile(o, o.Raw));
    if (!sedra::CommandReadRaw(model, prompt, o.MaxRes, [&model] { model.Plot().ZoomFactor = 1; })) return false;
  } else {
    prompt.Files.push_back(SectionFile(o, o.Folder / "radiograph.tif"));
    if (!sedra::CommandReadRadiograph(model, prompt)) return false;
  }
  if (!model.CurRadiograph().Loaded()) return false;
  if (o.Optical) {
    prompt.Files.push_back(SectionFile(o, o.Folder / "optical.tif"));
    if (!sedra::CommandReadOptical(model, prompt)) return false;
    if (!model.CurOptical().Loaded()) return false;
  }
  return true;
}

// The further sections of the core, then the whole core shown from its first section.
bool AddSections(sedra::Model& model, FolderPrompt& prompt, const Options& o) {
  if (o.MoreFolders.empty()) return true;
  for (const std::filesystem::path& folder : o.MoreFolders) {
    std::error_code ec;
    prompt.Files.push_back(std::filesystem::absolute(folder / "radiograph.tif", ec));
    if (!sedra::CommandAddSection(model, prompt)) {
      std::fprintf(stderr, "sedra-render: could not add the section in %s\n", folder.string().c_str());
      return false;
    }
  }
  model.SelectSection(0);
  model.Plot().ShowAllSections = 1;
  model.Plot().NeedLayout = 1;
  return true;
}

void SetView(sedra::Model& model, const Options& o) {
  sedra::PlotState& plot = model.Plot();
  plot.ZoomFactor = o.Zoom;
  plot.OverlayOr = o.Overlay == 1;
  plot.OverlayAnd = o.Overlay == 2;
}

int RenderPng(sedra::Model& model, const Options& o) {
  const int dpi = o.Dpi > 0 ? o.Dpi : 96;
  const int width = o.PageWidth > 0 ? o.PageWidth : 1000;
  const int height = o.PageHeight > 0 ? o.PageHeight : 700;
  QImage image(width, height, QImage::Format_RGB32);
  if (image.isNull()) return 3;
  const int dotsPerMeter = int(std::lround(dpi / 0.0254));
  image.setDotsPerMeterX(dotsPerMeter);
  image.setDotsPerMeterY(dotsPerMeter);
  image.fill(Qt::white);
  {
    QPainter painter(&image);
    sedra::PaintTarget target;
    target.Client = image.rect();
    target.ScrollPos = o.Scroll;
    // The window is seen on a screen, which spaces the value-scale ticks: a common
    // 1920-pixel desktop, or the page itself when it is wider.
    target.HorzRes = std::max(width, 1920);
    sedra::PaintPlot(model, painter, target);
  }
  // Written whole or not at all: a full disk leaves no truncated PNG behind.
  if (const int error = sedra::WriteImageFile(image, o.Out, "PNG")) {
    std::fprintf(stderr, "%s\n", sedra::FileNotWrittenMessage(o.Out, error).c_str());
    return 3;
  }
  return 0;
}

int RenderPdf(sedra::Model& model, const Options& o) {
  const int dpi = o.Dpi > 0 ? o.Dpi : 300;
  sedra::PdfFile pdf(o.Out);
  if (!pdf.Open()) {
    std::fprintf(stderr, "%s\n", sedra::msg::kNoPdfDriver);
    return 3;
  }
  QPdfWriter& writer = pdf.Writer();
  writer.setResolution(dpi);
  writer.setTitle(QStringLiteral("Sedra Plot"));
  if (o.PageWidth > 0) {
    const QSizeF points(o.PageWidth * 72.0 / dpi, o.PageHeight * 72.0 / dpi);
    writer.setPageLayout(QPageLayout(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch),
                                     QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
  } else {
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(0, 0, 0, 0)));
  }
  QPainter painter;
  if (!painter.begin(&writer)) {
    std::fprintf(stderr, "%s\n", sedra::msg::kNoPdfDriver);
    return 3;
  }
  sedra::PlotState& plot = model.Plot();
  const int width = painter.device()->width();
  const int height = painter.device()->height();
  plot.Printing = 1;
  plot.PageRect = {0, 0, width, height};
  // The scroll position is given in page pixels.
  plot.ScreenHeight = height;
  sedra::PaintTarget target;
  target.Client = QRect(0, 0, width, height);
  target.ScrollPos = o.Scroll;
  sedra::PaintPlot(model, painter, target);
  plot.Printing = 0;
  painter.end();
  if (!pdf.Commit()) {
    std::fprintf(stderr, "%s\n", sedra::FileNotWrittenMessage(o.Out, pdf.Error()).c_str());
    return 3;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const int status = ParseOptions(argc, argv, options)) return status;

  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  sedra::RegisterFontSubstitutes();

  // The plot is drawn as the program draws it: with the display settings of the working
  // folder when the program has left them there, with the built-in ones otherwise.
  sedra::Model model;
  FolderPrompt prompt;
  const std::filesystem::path here = std::filesystem::current_path();
  if (std::filesystem::exists(here / "defaults.def")) {
    if (!sedra::ReadSettings(model, here, &prompt)) return 1;
  } else {
    sedra::SetDefaultSettings(model.App.Settings);
  }
  sedra::StartSession(model);

  if (!Load(model, prompt, options)) {
    std::fprintf(stderr, "sedra-render: could not read the section in %s\n", options.Folder.string().c_str());
    return 1;
  }
  if (!AddSections(model, prompt, options)) return 1;
  SetView(model, options);
  if (options.Expand && !ApplyExpand(model, prompt, options.ExpandTop, options.ExpandBottom)) return 1;

  return options.Out.extension() == ".pdf" ? RenderPdf(model, options) : RenderPng(model, options);
}
