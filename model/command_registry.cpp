#include "model/command_registry.h"

#include "model/menu_state.h"
#include "model/model.h"

namespace sedra {

bool Satisfied(Needs needs, const Model& model) {
  const CoreSection& section = model.CurSection();
  switch (needs) {
    case Needs::Nothing: return true;
    case Needs::OpticalImage: return section.Optical.Loaded();
    case Needs::Radiograph: return section.Radiographs[size_t(model.CurRadiographSlot())].Loaded();
  }
  return false;
}

void CommandRegistry::Add(int id, Needs needs, Handler run) { entries_[id] = Entry{needs, std::move(run)}; }

Needs CommandRegistry::NeedsOf(int id) const {
  auto it = entries_.find(id);
  return it == entries_.end() ? Needs::Nothing : it->second.Precondition;
}

bool CommandRegistry::Dispatch(int id, const Model& model) const {
  auto it = entries_.find(id);
  if (it == entries_.end()) return false;
  const bool run = Satisfied(it->second.Precondition, model);
  if (Observer) Observer(id, run);
  if (!run) return false;
  // A copy: the handler may close the window that owns this registry.
  const Handler handler = it->second.Run;
  handler();
  return true;
}

const std::vector<int>& CommandsNotYetBuilt() {
  static const std::vector<int> kMissing;
  return kMissing;
}

}  // namespace sedra
