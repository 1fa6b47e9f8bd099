#pragma once
// One registry of the menu's commands.  Each layer registers the commands it owns: the
// id, what must be loaded for the command to do anything, and what it does.  The main
// window only looks an id up, so no rule about a command is spelled in the dispatch.

#include <functional>
#include <map>
#include <vector>

namespace sedra {

class Model;

// What a command needs before it does anything.  Without it, choosing the command does
// nothing at all: no message, no dialog (the image tools have always been silent so).
enum class Needs { Nothing, OpticalImage, Radiograph };

bool Satisfied(Needs needs, const Model& model);

class CommandRegistry {
 public:
  using Handler = std::function<void()>;

  // Registers `id`; a second registration replaces the first.
  void Add(int id, Needs needs, Handler run);
  bool Has(int id) const { return entries_.count(id) != 0; }
  Needs NeedsOf(int id) const;

  // Runs `id` when it is registered and what it needs is there; returns whether it ran.
  // Unknown ids do nothing.
  bool Dispatch(int id, const Model& model) const;

  // Told of every dispatch of a registered id, whether it ran or not.
  std::function<void(int id, bool ran)> Observer;

 private:
  struct Entry {
    Needs Precondition;
    Handler Run;
  };
  std::map<int, Entry> entries_;
};

// Menu commands that no layer handles yet: choosing one does nothing.  Kept as one
// list so that a dead menu item is visible (the registry test knows it).
const std::vector<int>& CommandsNotYetBuilt();

}  // namespace sedra
