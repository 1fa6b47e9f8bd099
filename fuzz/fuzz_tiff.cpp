// TIFF bytes of any kind, as a radiograph (with contrast and display bits) and as an
// optical image.  A memory ceiling of its own keeps each run small.
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_prompt.h"
#include "images/conversion.h"
#include "images/load.h"
#include "import/tiff_reader.h"
#include "model/model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static sedra::Model* model = new sedra::Model;
  sedra::fuzz::SilentPrompt prompt;
  model->CurSection().RadiographCount = 0;
  constexpr int64_t kCap = int64_t(64) << 20;
  if (sedra::ReadTiffMemory(*model, prompt, data, size, true, false, "f.tif", {}, kCap).PixelsRead)
    sedra::FinishRadiographLoad(*model);
  if (sedra::ReadTiffMemory(*model, prompt, data, size, false, false, "f.tif", {}, kCap).PixelsRead) {
    model->CurOptical().Lower = 10;
    sedra::UpdateOpticalDib(*model);
  }
  return 0;
}
