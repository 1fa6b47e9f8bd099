// document.txt keeps its decimal point on a desktop whose locale writes a comma.
#include <gtest/gtest.h>

#include "import/document_reader.h"
#include "model/model.h"
#include "support/german_numbers.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

TEST(DocumentReader, ReadsDecimalPointsUnderAGermanLocale) {
  test::GermanNumbers german;
  ASSERT_TRUE(german.Active());
  Model model;
  test::ScriptedPrompt prompt;
  ParseSectionMetadata(model, prompt, "Start coordinate\t100.5\tEnd coordinate\t400.25\r\n", false);
  EXPECT_FLOAT_EQ(model.Work().StartCoordinate, 100.5f);
  EXPECT_FLOAT_EQ(model.Work().EndCoordinate, 400.25f);
}

}  // namespace
}  // namespace sedra
