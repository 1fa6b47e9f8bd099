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
    return buttons == Buttons::Ok ? Answer::Ok : Next(Answers, Answer::Cancel);
  }
  FileChoice OpenFile(const FileRequest& request) override {
    OpenRequests.push_back(request);
    return Next(Files, FileChoice{});
  }
  FileChoice SaveFile(const FileRequest& request) override {
    SaveRequests.push_back(request);
    return Next(Files, FileChoice{});
  }
  void SetBusy(bool) override { ++BusyCalls; }

  void ChooseFile(const std::string& path, int filterIndex = 1) { Files.push_back({true, path, filterIndex}); }
  std::vector<std::string> Texts() const {
    std::vector<std::string> out;
    for (const auto& m : Messages) out.push_back(m.Text);
    return out;
  }

 private:
  template <class T>
  static T Next(std::deque<T>& queue, T none) {
    if (queue.empty()) return none;
    const T first = queue.front();
    queue.pop_front();
    return first;
  }
};

}  // namespace sedra::test
