#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "framework/Baton.h"
#include "framework/EventLoop.h"
#include "tests/FolderFixture.h"
#include "tests/headless/HeadlessToolkit.h"
#include "windows/Window1.h"

/// Runs the program, from its start to its end, in a temporary home folder of its own and with a stand-in
/// diskutil on PATH, whose answers are files: see tests/tools/diskutil.
class ProgramFixture : public FolderFixture {
 protected:
  ProgramFixture();
  ~ProgramFixture() override;

  /// Runs the program with `user` acting in its event loop; where that leaves it running, the user quits
  /// through the menu at last. The program runs once in a process. Returns its exit status.
  int RunProgram(std::function<void()> user);

  // What the tool says and does, and the calls it got, each as its arguments joined by "|".
  void Write(const std::string& name, const std::string& text) const;
  void Remove(const std::string& name) const { std::filesystem::remove(tool_ / name); }
  bool Has(const std::string& name) const { return std::filesystem::exists(tool_ / name); }
  std::vector<std::string> Calls() const;

  // The preferences file, of which the usual one asks for no scan.
  std::filesystem::path PrefsFile() const { return config_ / "Dravik.prefs"; }
  void WritePrefs(const std::string& text) const;
  void WritePrefs(bool scan, bool feedback, bool unMount) const;
  std::string ReadPrefs() const;

  // The user's hand. A control that is not there or cannot be used fails the test.
  static void Press(const String& button) {
    Use<PushButton>(button, [](auto& control) { control.UserPress(); });
  }
  static void Select(int row) {
    Use<Listbox>("ListBox2", [row](auto& list) { list.UserSelect(row, list.Generation()); });
  }
  static void DoubleClick() {
    Use<Listbox>("ListBox2", [](auto& list) { list.UserDoubleClick(); });
  }
  static void SelectTab(int tab) {
    Use<TabPanel>("TabPanel1", [tab](auto& tabs) { tabs.UserSelect(tab); });
  }
  static void Tick(const String& box, bool ticked) {
    Use<CheckBox>(box, [ticked](auto& control) { control.UserSet(ticked); });
  }
  static void Choose(const String& menuItem);
  static void CloseMainWindow() {
    EventLoop::Deliver([] { Window1()->UserClose(); });
  }
  /// Presses Scan and waits until the scan has ended.
  static void Scan();
  static bool WaitForScan();

  /// The table as text: a line for each row, its cells between bars and "mounted", "not mounted" or what else
  /// its style says.
  static std::string Table();
  static bool IsOpen(const std::string& window);
  static bool IsEnabled(const String& control);

  /// Reads something of the program while nobody changes it.
  template <class F>
  static auto Read(F&& read) {
    const Baton::Turn turn;
    return read();
  }

  template <class T, class Act>
  static void Use(const String& name, Act act) {
    EventLoop::Deliver([&] {
      const auto control = Window1()->Named<T>(name);
      if (!control || !control->Reachable()) FAIL() << "cannot be used: " << name.Utf8();
      act(*control);
    });
  }

  std::filesystem::path config_;
  std::filesystem::path tool_;
};
