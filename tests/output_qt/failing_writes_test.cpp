// Every kind of output on a machine that fails it: a full device, a file-size limit hit
// half-way, a read-only folder or file, a folder that is gone.  Each tells the user
// once, leaves an earlier file of that name as it was and leaves no temporary behind.

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/resource.h>

#include <QImage>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "model/file_replace.h"
#include "model/messages.h"
#include "output/file_bytes.h"
#include "output/qt/image_output.h"
#include "output/qt/print_plot.h"
#include "output/qt/replacing_device.h"
#include "output_fixture.h"
#include "support/permissions.h"
#include "support/scripted_prompt.h"

namespace sedra::test {
namespace {

namespace fs = std::filesystem;

// Save Image's two formats, the PDF file and a PNG file, by their extensions.
constexpr std::string_view kOutputs[] = {".bmp", ".tif", ".pdf", ".png"};

struct FailingWrite {
  const char* Name;
  // Sets the scene in `folder` and says where the output goes.
  std::function<fs::path(const fs::path& folder, const std::string& name)> Prepare;
  bool CannotCreate;  // the file cannot even be begun
  int Error;
  bool SizeLimit = false;  // the process may write no more than a kilobyte per file
};

const std::string kEarlier = "an earlier file the user keeps";

fs::path Earlier(const fs::path& folder, const std::string& name) {
  WriteAllText(folder / name, kEarlier);
  return folder / name;
}

class FailingWrites : public OutputTest, public ::testing::WithParamInterface<FailingWrite> {
 protected:
  // Runs one output into `target`; returns what the user was told.
  std::string Run(std::string_view output, const fs::path& target) {
    ScriptedPrompt user;
    user.Answers.assign(4, Answer::Yes);  // overwrite an existing file: yes
    if (output == ".pdf") {
      user.ChooseFile(target.string());
      EXPECT_FALSE(PrintPlot(*model, user, printer, mainWindow, 0, true));
    } else if (output == ".png") {
      QImage noise(300, 300, QImage::Format_RGB32);
      for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 300; ++x) noise.setPixel(x, y, qRgb((x * 7919) % 256, (y * 104729) % 256, (x ^ y) & 255));
      const int error = WriteImageFile(noise, target, "PNG");
      return error ? FileNotWrittenMessage(target, error) : std::string();
    } else {
      user.ChooseFile(target.string(), output == ".bmp" ? 1 : 2);
      EXPECT_FALSE(SaveImage(*model, user, view));
    }
    std::string told;
    for (const auto& m : user.Messages)
      if (m.ButtonSet == Buttons::Ok) told += m.Text;
    return told;
  }
};

TEST_P(FailingWrites, TellTheUserAndLeaveTheEarlierFile) {
  const FailingWrite& c = GetParam();
  view.resize(300, 200);  // larger than a write block, so writes fail before the last one
  for (std::string_view output : kOutputs) {
    SCOPED_TRACE(output);
    TempFolder folder{"failing"};
    const fs::path target = c.Prepare(folder.Path(), "plot" + std::string(output));
    const bool hadEarlier = fs::exists(target) && fs::is_regular_file(target);
    std::string told;
    rlimit saved{};
    getrlimit(RLIMIT_FSIZE, &saved);
    if (c.SizeLimit) {
      signal(SIGXFSZ, SIG_IGN);  // a write past the limit fails instead of ending the process
      rlimit limit = saved;
      limit.rlim_cur = 1024;
      setrlimit(RLIMIT_FSIZE, &limit);
    }
    WithoutPermissionOverride([&] { told = Run(output, target); });
    setrlimit(RLIMIT_FSIZE, &saved);
    fs::permissions(folder.Path(), fs::perms::owner_all);

    std::string expect = FileNotWrittenMessage(target, c.Error);
    if (c.CannotCreate && output == ".pdf") expect = msg::kNoPdfDriver;
    if (c.CannotCreate && (output == ".bmp" || output == ".tif")) expect = msg::kCouldNotOpenDataFile;
    EXPECT_EQ(told, expect);
    if (hadEarlier) {
      EXPECT_EQ(ReadAllText(target), kEarlier);
    }
    std::error_code ec;
    for (const auto& entry : fs::recursive_directory_iterator(folder.Path(), ec))
      EXPECT_EQ(entry.path().filename().string().find(".tmp-"), std::string::npos) << entry.path();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FailingWrites,
    ::testing::Values(
        FailingWrite{"FullDevice",
                     [](const fs::path& f, const std::string& name) {
                       fs::create_symlink("/dev/full", f / name);
                       return f / name;
                     },
                     false, ENOSPC},
        FailingWrite{"FileSizeLimitHalfWay", Earlier, false, EFBIG, true},
        FailingWrite{"ReadOnlyFolder",
                     [](const fs::path& f, const std::string& name) {
                       const fs::path p = Earlier(f, name);
                       fs::permissions(f, fs::perms::owner_read | fs::perms::owner_exec);
                       return p;
                     },
                     true, EACCES},
        FailingWrite{"ReadOnlyEarlierFile",
                     [](const fs::path& f, const std::string& name) {
                       const fs::path p = Earlier(f, name);
                       fs::permissions(p, fs::perms::owner_read | fs::perms::group_read);
                       return p;
                     },
                     true, EACCES},
        FailingWrite{"VanishedFolder", [](const fs::path& f, const std::string& name) { return f / "gone" / name; },
                     true, ENOENT}),
    [](const auto& i) { return std::string(i.param.Name); });

}  // namespace
}  // namespace sedra::test
