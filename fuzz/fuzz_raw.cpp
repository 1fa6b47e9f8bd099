// RAW text of any bytes at both resolutions, through contrast and display bits.  Every
// parse is checked against the plain character-by-character one of the tests.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/fuzz_prompt.h"
#include "images/load.h"
#include "import/raw_reader.h"
#include "model/model.h"
#include "tests/support/raw_reference.h"

// A memory ceiling of its own keeps each run small and far below the fuzzer's limit.
constexpr int64_t kCeiling = int64_t(64) << 20;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static sedra::Model* model = new sedra::Model;
  sedra::fuzz::SilentPrompt prompt;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (bool maxRes : {true, false}) {
    model->CurSection().RadiographCount = 0;
    if (!sedra::ParseRawRadiograph(*model, prompt, text, maxRes, kCeiling).PixelsRead) continue;
    const sedra::RadiographDesc& r = model->CurRadiograph();
    const int n = int(std::count(text.begin(), text.begin() + int64_t(text.find('\n')), '\t'));
    const sedra::test::RawReference expect = sedra::test::ReferenceRawParse(
        text, n, model->App.Work.SampleStep, model->App.Work.RawLineGroup, r.Width);
    if (expect.Samples.size() != r.Samples.size() || expect.MaxValue != r.MaxValue ||
        !std::equal(expect.Samples.begin(), expect.Samples.end(), r.Samples.begin()))
      __builtin_trap();
    sedra::FinishRadiographLoad(*model);
  }
  return 0;
}
