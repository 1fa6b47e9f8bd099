#pragma once
// A Prompt for tests: records every message and file request, answers from queues.

#include <deque>
#include <string>
#include <vector>

#include "model/prompt.h"

namespace sedra::test {

struct RecordedMessage {
  std::string Text, Caption;
  Icon IconKind;
  Buttons ButtonSet;
};

class ScriptedPrompt : public Prompt {
 public:
  std::vector<RecordedMessage> Messages;
  std::vector<FileRequest> OpenRequests, SaveRequests;
  std::deque<Answer> Answers;        // for questions; OK boxes need no answer
  std::deque<FileChoice> Files;      // for open and save dialogs; empty = cancel
  int BusyCalls = 0;

  Answer Message(const std::string& text, const std::string& caption, Icon icon, Buttons buttons) override {
    Messages.push_back({text, caption, icon, buttons});
    if (buttons == Buttons::Ok) return Answer::Ok;
    if (Answers.empty()) return Answer::Cancel;
    const Answer a = Answers.front();
    Answers.pop_front();
    return a;
  }
  FileChoice OpenFile(const FileRequest& request) override {
    OpenRequests.push_back(request);
    return Next();
  }
  FileChoice SaveFile(const FileRequest& request) override {
    SaveRequests.push_back(request);
    return Next();
  }
  void SetBusy(bool) override { ++BusyCalls; }

  void ChooseFile(const std::string& path, int filterIndex = 1) { Files.push_back({true, path, filterIndex}); }
  std::vector<std::string> Texts() const {
    std::vector<std::string> out;
    for (const auto& m : Messages) out.push_back(m.Text);
    return out;
  }

 private:
  FileChoice Next() {
    if (Files.empty()) return {};
    FileChoice f = Files.front();
    Files.pop_front();
    return f;
  }
};

}  // namespace sedra::test
