// The menu as com.canonical.dbusmenu tells it: a tree of numbered entries with properties, and what a change of it
// means to a host that shows the one before. No bus in here.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "../bus/Handles.h"
#include "PanelIcon.h"
#include "platform/StatusItem.h"

namespace quillmere::statusitem {

/// What the host has to be told after a change. [host]
struct MenuChange {
  struct Properties {
    int id = 0;
    std::map<std::string, bus::Variant> changed;
    /// Names of those that have gone back to their default.
    std::vector<std::string> removed;
  };

  /// Entries whose list of children is another; 0 is the menu itself. Not those within a list that is new as a whole.
  std::vector<int> parents;
  /// Of entries that were there before.
  std::vector<Properties> properties;

  [[nodiscard]] bool isEmpty() const { return parents.empty() && properties.empty(); }
  /// (a(ia{sv})a(ias)), the body of ItemsPropertiesUpdated.
  [[nodiscard]] bus::Variant propertiesUpdated() const;
};

/// Not safe to share between threads. [host]
class BusMenu {
 public:
  explicit BusMenu(Ink ink = menuInk(std::nullopt)) : ink_(ink) {}

  /// Entries with the same id are the same entry: only what differs in them is a change.
  MenuChange replace(std::vector<StatusMenuItem> items);
  MenuChange setInk(Ink ink);

  /// Goes up whenever a list of children is another.
  [[nodiscard]] std::uint32_t revision() const { return revision_; }
  /// Entry 0 is the menu itself.
  [[nodiscard]] bool contains(int id) const;
  /// Whether a click on it means anything.
  [[nodiscard]] bool canBeChosen(int id) const;

  /// (u(ia{sv}av)), the answer to GetLayout: the entry with `depth` levels below it, all where it is negative. No names
  /// stand for all properties. Null for an unknown entry.
  [[nodiscard]] bus::Variant layout(int parent, int depth, const std::vector<std::string>& names) const;
  /// (a(ia{sv})); no ids stand for all entries, unknown ones are left out.
  [[nodiscard]] bus::Variant groupProperties(const std::vector<int>& ids, const std::vector<std::string>& names) const;
  /// Null for an unknown entry and a property that it has not.
  [[nodiscard]] bus::Variant property(int id, const std::string& name) const;

 private:
  using PropertyMap = std::map<std::string, bus::Variant>;

  /// Everything that is not at its default; title and enabling always.
  [[nodiscard]] PropertyMap properties(const StatusMenuItem& item) const;
  [[nodiscard]] GVariant* node(const StatusMenuItem& item, int depth, const std::vector<std::string>& names) const;
  [[nodiscard]] GVariant* dictionary(const StatusMenuItem& item, const std::vector<std::string>& names) const;
  [[nodiscard]] const StatusMenuItem* find(int id) const;
  void addChanges(const StatusMenuItem& before, const PropertyMap& after, int id, MenuChange& change) const;
  void collectParents(const StatusMenuItem& before, const StatusMenuItem& after, std::vector<int>& parents) const;

  Ink ink_;
  /// The menu itself: a submenu without a title, with id 0.
  StatusMenuItem root_ = [] {
    StatusMenuItem root;
    root.kind = StatusMenuItem::Kind::submenu;
    return root;
  }();
  std::uint32_t revision_ = 1;
};

}  // namespace quillmere::statusitem
