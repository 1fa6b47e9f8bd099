#pragma once
// Shared by the reader benchmarks: large generated inputs, made once per build tree.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "model/prompt.h"

namespace sedra::bench {

// A section folder made by make-sample-core with `options`, reused when present.
inline std::filesystem::path SampleFolder(const std::string& name, const std::string& options) {
  const std::filesystem::path dir = std::filesystem::path(SEDRA_BUILD_DIR) / "bench-data" / name;
  if (!std::filesystem::exists(dir / "done")) {
    std::filesystem::remove_all(dir);
    const std::string cmd = std::string("\"") + SEDRA_SAMPLE_TOOL + "\" \"" + dir.string() + "\" " + options + " >/dev/null";
    if (std::system(cmd.c_str()) != 0) {
      std::fprintf(stderr, "could not generate %s\n", dir.string().c_str());
      std::exit(1);
    }
    std::ofstream(dir / "done") << "ok";
  }
  return dir;
}

inline std::string ReadAll(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Answers every question with OK and every file dialog with one path.
class FixedPrompt : public Prompt {
 public:
  std::string Path;
  Answer Message(const std::string&, const std::string&, Icon, Buttons) override { return Answer::Ok; }
  FileChoice OpenFile(const FileRequest&) override { return {true, Path, 1}; }
  FileChoice SaveFile(const FileRequest&) override { return {}; }
};

}  // namespace sedra::bench
