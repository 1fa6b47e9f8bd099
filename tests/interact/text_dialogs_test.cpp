// The title and text-field tools on a bare host: what typing stores, the sizes, the
// slots, and where a placed title or text is painted on an image and a PDF page.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPdfWriter>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>

#include "interact/mouse_engine.h"
#include "interact/text_dialogs.h"
#include "model/messages.h"
#include "model/numbers.h"
#include "painted_section.h"
#include "support/fake_host.h"

namespace sedra {
namespace {

// Tool 0 edits the main title, 1 the section title, 2 the text fields (slot 0 first).
TextToolDialog* Open(test::FakeHost& h, int tool) {
  if (tool == 0) return ShowTool<MainTitleDialog>(h);
  return tool == 1 ? ShowTool<SectionTitleDialog>(h) : static_cast<TextToolDialog*>(ShowTool<TextFieldDialog>(h));
}
std::pair<char*, int32_t&> Item(Model& m, int tool) {
  if (tool == 0) return {m.Plot().CoreTitle, m.Plot().MainTitleFontSize};
  if (tool == 1) return {m.CurSection().SectionName, m.CurSection().SectionTitleFontSize};
  return {m.Plot().TextFields[0].Text, m.Plot().TextFields[0].FontSize};
}
// Types into the text (1444) or size (1493) box and leaves it, as a click on the plot does.
void Type(TextToolDialog* d, int id, const QString& text) {
  QLineEdit* edit = id == 1444 ? Control<QLineEdit>(d, id) : Control<QComboBox>(d, id)->lineEdit();
  edit->setText(text);
  emit edit->editingFinished();
}

// Each tool starts from the text "old" and no size (so the default shows), then one box
// is typed into and "Finished" clicked.
TEST(TextDialogs, TypedTextAndSizesAreStoredCutOrRefused) {
  const struct { int tool, id; QString typed; std::string text; int size; std::string told; } rows[] = {
      {0, 1444, "Kernprobe Müller ø é", "Kernprobe M\xFCller \xF8 \xE9", 14, {}},
      {1, 1444, QString(31, 'a') + "b\u0141", std::string(31, 'a'), 8, {}},  // cut before the characters are looked at
      {2, 1444, "\u20AC 5 \u2013 \u201Cx\u201D", "\x80 5 \x96 \x93x\x94", 10, {}},
      {2, 1444, "Cafe\u0301", "Caf\xE9", 10, {}},  // the accent is composed with its letter
      {0, 1444, "\u0141\u00F3d\u017A", "old", 14, Format(msg::kTextNotStorable, 0x141)},
      {1, 1444, "core \U0001F642", "old", 8, Format(msg::kTextNotStorable, 0x1F642)},
      {0, 1493, "16", "old", 16, {}}, {1, 1493, " 12pt", "old", 12, {}}, {2, 1493, "abc", "old", 10, {}},
      {2, 1493, "1000", "old", 1000, {}}, {0, 1493, "1001", "old", 14, Format(msg::kFontSizeTooLarge, 1001, 1000, 14)}};
  for (const auto& r : rows) {
    test::FakeHost h;
    CopyField(Item(h.M, r.tool).first, 64, "old");
    Type(Open(h, r.tool), r.id, r.typed);
    Control<QPushButton>(h.Tool, 1)->click();
    EXPECT_EQ(std::tuple(std::string(Item(h.M, r.tool).first), Item(h.M, r.tool).second, h.Prompt.Texts(), h.Tool),
              std::tuple(r.text, r.size, r.told.empty() ? std::vector<std::string>{} : std::vector{r.told},
                         (ToolDialog*)nullptr)) << r.typed.toStdString();
  }
}

// Placed by a click over the optical image, the text is painted opaque from the click's
// x and one plot-font height above it, and a PDF page painted so carries it as text.
// Text field 2 is chosen by its radio button, so it is painted only with the size the
// switch gave it.
TEST(TextDialogs, PlacedTextIsPaintedWhereTheClickPutIt) {
  for (int tool : {0, 1, 2}) {
    test::FakeHost h;
    PlotLayout l = test::LoadAndPaint(h.M);
    h.M.Work().ShowCoreName = h.M.Work().ShowSectionName = 1;
    TextToolDialog* d = Open(h, tool);
    if (tool == 2) Control<QRadioButton>(d, 1387)->click();  // field 2, never used: size 10
    Type(d, 1444, "Wörter-Øre");
    const IntRect optical = h.M.CurOptical().DrawnRect;
    const int x = optical.Left + 12, y = (optical.Top + optical.Bottom) / 2, top = y - l.CharHeight;
    OnLButtonDown(h.M, l, {x, y});
    OnLButtonUp(h.M, l, {x, y});
    Control<QPushButton>(d, 1)->click();
    const QImage page = test::Paint(h.M, 1000, 700);
    auto at = [&page](int i, int j) { return test::Rgb(page, i, j); };
    int dark = 0;  // black text pixels
    for (int i = x; i < x + 30; ++i)
      for (int j = top; j < y; ++j) dark += at(i, j) == 0;
    // Left of and above the box the image stays; inside it is white or black (0 mod 0xFFFFFF).
    EXPECT_EQ(std::tuple(at(x - 3, top + 4), at(x + 4, top - 3), at(x + 2, top + 2) % 0xFFFFFF, dark > 20),
              std::tuple(at(x - 8, top - 8), at(x - 8, top - 8), 0u, true)) << tool;
    QTemporaryDir dir;
    QPdfWriter pdf(dir.filePath("page.pdf"));
    // The page is written when the painter ends, at the end of this statement.
    PaintPlot(h.M, *std::make_unique<QPainter>(&pdf), PaintTarget{QRect(0, 0, 1000, 700), {}, 0, 0, {}, true});
    QProcess text;
    text.start("pdftotext", {dir.filePath("page.pdf"), "-"});
    EXPECT_TRUE(text.waitForFinished() && QString::fromUtf8(text.readAllStandardOutput()).contains("Wörter-Øre"));
  }
}

}  // namespace
}  // namespace sedra
