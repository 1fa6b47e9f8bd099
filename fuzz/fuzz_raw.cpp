// RAW text of any bytes at both resolutions, through contrast and display bits.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/fuzz_prompt.h"
#include "images/load.h"
#include "import/raw_reader.h"
#include "model/model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static sedra::Model* model = new sedra::Model;
  sedra::fuzz::SilentPrompt prompt;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (bool maxRes : {true, false}) {
    model->CurSection().RadiographCount = 0;
    if (sedra::ParseRawRadiograph(*model, prompt, text, maxRes, int64_t(1) << 22).PixelsRead)
      sedra::FinishRadiographLoad(*model);
  }
  return 0;
}
