#pragma once
// A Prompt that answers everything with OK and never chooses a file.

#include "model/prompt.h"

namespace sedra::fuzz {

class SilentPrompt : public Prompt {
 public:
  Answer Message(const std::string&, const std::string&, Icon, Buttons) override { return Answer::Ok; }
  FileChoice OpenFile(const FileRequest&) override { return {}; }
  FileChoice SaveFile(const FileRequest&) override { return {}; }
};

}  // namespace sedra::fuzz
