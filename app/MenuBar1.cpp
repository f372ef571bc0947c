#include "app/MenuBar1.h"

#include "app/App.h"
#include "framework/QuitMenuItem.h"

namespace {

Ref<class MenuBar1>& Kept() {
  static Ref<class MenuBar1> kept;
  return kept;
}

template <class Item>
Ref<Item> NewItem(const String& name, const String& text) {
  Ref<Item> item = New<Item>();
  item->Name = name;
  item->AutoEnable = true;
  item->Text = text;
  return item;
}

template <class Item>
Ref<Item> NewItem(const String& name, const String& text, const String& shortcut) {
  Ref<Item> item = NewItem<Item>(name, text);
  item->KeyboardShortcut = shortcut;
  return item;
}

}  // namespace

Ref<class MenuBar1> MenuBar1() {
  if (!Kept()) Kept() = New<class MenuBar1>();
  return Kept();
}

void ReleaseMenuBar1() {
  Kept() = nullptr;
}

Ref<AppleMenuItem> AppleAbout() {
  return Cast<AppleMenuItem>(App()->MenuBar->_Lookup("AppleAbout"));
}

void MenuBar1::Constructor() {
  Untitled1();
  Untitled2();
}

void MenuBar1::Untitled1() {
  Append(NewItem<MenuItem>("FileMenu", "&File", ""));
  Child("FileMenu")->Append(NewItem<QuitMenuItem>("FileQuit", "Quit", "Cmd+Q"));
}

void MenuBar1::Untitled2() {
  Append(NewItem<MenuItem>("EditMenu", "&Edit", ""));
  const auto append = [this](const Ref<MenuItem>& item) { Child("EditMenu")->Append(item); };
  append(NewItem<MenuItem>("EditUndo", "&Undo", "Cmd+Z"));
  append(NewItem<MenuItem>("UntitledMenu0", "-"));
  append(NewItem<MenuItem>("EditCut", "Cu&t", "Cmd+X"));
  append(NewItem<MenuItem>("EditCopy", "&Copy", "Cmd+C"));
  append(NewItem<MenuItem>("EditPaste", "&Paste", "Cmd+V"));
  append(NewItem<MenuItem>("EditClear", "Clear", ""));
  append(NewItem<AppleMenuItem>("AppleAbout", "About Dravik…", ""));
}
