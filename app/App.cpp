#include "app/App.h"

#include "app/MenuBar1.h"
#include "framework/FolderItem.h"
#include "windows/AboutWindow.h"

namespace {

constexpr const char* kFileName = "Dravik.prefs";
/// The version of the file's format, which is counted apart from the program's.
constexpr const char* kFormatVersion = "1.3";

String YesOrNo(bool value) {
  return value ? "yes" : "no";
}

void TakeDefaults(class App& app) {
  app.showFeedbackWin = false;
  app.showUnMountBtn = false;
  app.scan = true;
}

}  // namespace

Ref<class App> App() {
  return Cast<class App>(Application::Current());
}

void App::Event_Close() {
  savePrefs();
}

void App::Event_EnableMenuItems() {
  AppleAbout()->Enabled = true;
}

void App::Event_Open() {
  loadPrefs();
}

bool App::_AppleAbout_Action() {
  ::AboutWindow()->Show();
  return false;
}

void App::savePrefs() {
  const auto file = SpecialFolder::Preferences()->Child(kFileName);
  const auto stream = file->CreateTextFile();
  stream->WriteLine("# Dravik's preferences version");
  stream->WriteLine(kFormatVersion);
  stream->WriteLine("# Scan on startup");
  stream->WriteLine(YesOrNo(scan));
  stream->WriteLine("# Show feedback window'");
  stream->WriteLine(YesOrNo(showFeedbackWin));
  stream->WriteLine("# Show unMount button'");
  stream->WriteLine(YesOrNo(showUnMountBtn));
  stream->WriteLine("# EOF");
  stream->Close();
}

/// The file goes by line numbers: every other line is a comment for a person who opens it, and anything but
/// "yes" on a value's line means no.
void App::loadPrefs() {
  const auto file = SpecialFolder::Preferences()->Child(kFileName);
  if (!file->Exists()) return TakeDefaults(*this);
  const auto stream = file->OpenAsTextFile();
  stream->ReadLine();
  vrs = stream->ReadLine();
  if (!(vrs == kFormatVersion)) return TakeDefaults(*this);
  stream->ReadLine();
  scan = stream->ReadLine() == "yes";
  stream->ReadLine();
  showFeedbackWin = stream->ReadLine() == "yes";
  stream->ReadLine();
  showUnMountBtn = stream->ReadLine() == "yes";
}

void App::Constructor() {}
