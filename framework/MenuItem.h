#pragma once

#include <optional>
#include <vector>

#include "framework/Property.h"

/// An item of a menu, or a menu with items of its own. The text "-" makes a separator; an ampersand marks
/// the letter that chooses the item from the keyboard.
class MenuItem : public Viewed {
 public:
  void MarkStale() override;

  Property<String> Name{this};
  Property<String> Text{this};
  /// Such as "Cmd+Q", where "Cmd" stands for the platform's command modifier.
  std::optional<String> KeyboardShortcut;
  /// The framework enables the item by itself where choosing it does something.
  Property<bool> AutoEnable{this, true};
  Property<bool> Enabled{this, true};

  /// Adds the item at the end of this one's children.
  void Append(const Ref<MenuItem>& item) { children_.push_back(item); }
  /// The direct child of that name, or nil.
  Ref<MenuItem> Child(const String& name) const;
  /// The item of that name at any depth below this one, or nil.
  Ref<MenuItem> _Lookup(const String& name) const;

  const std::vector<Ref<MenuItem>>& Children() const { return children_; }
  bool IsSeparator() const { return Text == "-"; }

  /// What the item does by itself when it is chosen and no handler has taken it. True when it did something.
  virtual bool Event_Action() { return false; }
  /// True for a class whose `Event_Action` does something.
  virtual bool HasAction() const { return false; }

 private:
  std::vector<Ref<MenuItem>> children_;
};

/// The bar itself, at the root of all menus.
class MenuBar : public MenuItem {};

/// Stands in the application's own menu on a platform that has one.
class AppleMenuItem : public MenuItem {};
