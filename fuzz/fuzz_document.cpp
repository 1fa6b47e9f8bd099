// document.txt text of any bytes, with the change warnings on.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/fuzz_prompt.h"
#include "import/document_reader.h"
#include "model/model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static sedra::Model* model = new sedra::Model;
  sedra::fuzz::SilentPrompt prompt;
  model->Settings().ShowWarnings = 1;
  model->Plot().CurSectionIndex = 1;
  model->Plot().AxisLength = 300;
  model->CurOptical().Height = 1000;
  sedra::ParseSectionMetadata(*model, prompt, std::string_view(reinterpret_cast<const char*>(data), size), true);
  return 0;
}
