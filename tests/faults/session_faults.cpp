// Every call that can fail, failed once: the same session of the program runs again and again, each time with
// the next call failing that opens, reads, writes, looks, waits or takes a pipe, a thread, a process or
// memory, with each error it can have, until a run goes through. However it fails, a session ends by itself,
// leaves no half of a settings file, and says something where its outcome is another one.

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/Startup.h"
#include "framework/Application.h"
#include "framework/Baton.h"
#include "framework/EventLoop.h"
#include "framework/Menus.h"
#include "framework/Toolkit.h"
#include "tests/TextOf.h"
#include "tests/faults/Faults.h"
#include "windows/Window1.h"
#include "windows/Window3.h"

using faults::Spare;

// clang-format off
CALL(int, -1, open, (const char* path, int flags, mode_t mode), (path, flags, mode), EMFILE, ENOMEM, EIO, EACCES)
CALL(ssize_t, -1, read, (int file, void* to, size_t size), (file, to, size), EIO, EINTR)
CALL(ssize_t, -1, pread, (int file, void* to, size_t size, off_t at), (file, to, size, at), EIO, EINTR)
CALL(ssize_t, -1, write, (int file, const void* from, size_t size), (file, from, size), EIO, EINTR)
CALL(ssize_t, -1, pwrite, (int file, const void* from, size_t size, off_t at), (file, from, size, at), EIO, ENOSPC, EINTR)
CALL(int, -1, ftruncate, (int file, off_t size), (file, size), EIO)
CALL(int, -1, fsync, (int file), (file), EIO, ENOSPC, EINTR)
CALL(int, -1, pipe2, (int* ends, int flags), (ends, flags), EMFILE)
CALL(int, -1, fcntl, (int file, int command, long argument), (file, command, argument), EMFILE)
CALL(int, -1, stat, (const char* path, struct stat* to), (path, to), EIO, EACCES)
CALL(int, -1, fstat, (int file, struct stat* to), (file, to), EIO)
CALL(int, -1, access, (const char* path, int mode), (path, mode), EIO, EACCES)
CALL(ssize_t, -1, readlink, (const char* path, char* to, size_t size), (path, to, size), EIO)
CALL(int, -1, memfd_create, (const char* name, unsigned flags), (name, flags), EMFILE)
CALL(int, -1, poll, (pollfd* files, nfds_t count, int wait), (files, count, wait), EINTR, ENOMEM)
CALL(pid_t, -1, waitpid, (pid_t child, int* status, int flags), (child, status, flags), EINTR)
CALL(long, -1, syscall, (long number, long a, long b, long c, long d, long e, long f), (number, a, b, c, d, e, f), EMFILE, ENOSYS)
CALL(int, error, pthread_create, (pthread_t* made, const pthread_attr_t* with, void* (*run)(void*), void* argument), (made, with, run, argument), EAGAIN)
CALL(int, error, posix_spawn, (pid_t* child, const char* path, const posix_spawn_file_actions_t* actions, const posix_spawnattr_t* with, char* const* words, char* const* environment), (child, path, actions, with, words, environment), EAGAIN, ENOMEM)
CALL(int, error, posix_spawn_file_actions_adddup2, (posix_spawn_file_actions_t* actions, int from, int to), (actions, from, to), ENOMEM)

/// Memory: what our own code takes, and with `new` whatever C++ does.
#ifdef MEMORY_FAILS
CALL(void*, nullptr, __wrap_malloc, (std::size_t size), (size), ENOMEM)
CALL(void*, nullptr, __wrap_realloc, (void* old, std::size_t size), (old, size), ENOMEM)
#endif
// clang-format on

namespace {

template <class T>
Ref<T> Find(const char* window, const char* control) {
  const Spare spare;
  const auto open = _GetImplicitWindow(window);
  return open ? open->Named<T>(control) : nullptr;
}

template <class T>
void Act(const char* name, void (*act)(T&)) {
  EventLoop::Deliver([=] {
    if (const auto control = Find<T>("Window1.Window1", name); control && control->Reachable()) act(*control);
  });
}

/// A toolkit in which nothing fails. Its user dismisses every message, and goes once through the program.
class User : public Toolkit {
 public:
  void RunLoop() override {
    const auto scanning = [] {
      const Baton::Turn turn;
      const Spare spare;
      const auto window = Cast<class Window1>(_GetImplicitWindow("Window1.Window1"));
      return !window || window->scanTheBus1()->KillFd() >= 0;
    };
    while (!ended_ && scanning()) WaitForInput({}, 5);
    Act<Listbox>("ListBox2", [](Listbox& list) { list.UserSelect(1, list.Generation()); });
    Act<PushButton>("mountBtn", [](PushButton& button) { button.UserPress(); });
    Act<PushButton>("infoBtn", [](PushButton& button) { button.UserPress(); });
    Act<Listbox>("ListBox2", [](Listbox& list) {
      const Spare spare;
      for (int cell = 0; cell < list.ListCount() * 4; ++cell)
        std::printf("%s%d ", list.Cell(cell / 4, cell % 4).Utf8().c_str(), list.CellBold(cell / 4, cell % 4));
      if (const auto report = Find<TextArea>("Window3.Window3", "infoFld"))
        std::puts(report->Text.Get().Utf8().c_str());
    });
    Act<TabPanel>("TabPanel1", [](TabPanel& tabs) { tabs.UserSelect(1); });
    Act<CheckBox>("CheckBoxShowFeedbackWin", [](CheckBox& box) { box.UserSet(false); });
    Act<TabPanel>("TabPanel1", [](TabPanel& tabs) { tabs.UserSelect(0); });
    for (int attempt = 0; attempt < 2 && !EventLoop::Quitting(); ++attempt) {
      const auto quit = (Spare(), Application::Current()->MenuBar->_Lookup("FileQuit"));
      Menus::Refresh(nullptr);
      Menus::Choose(quit, nullptr);
    }
    while (!ended_) WaitForInput({}, -1);
  }
  void EndLoop() override { ended_ = true; }
  void Wake() override { eventfd_write(wake_, 1); }
  void Update(const std::vector<Ref<Window>>&, const Ref<MenuBar>&) override {}
  void Present(Window&) override {}
  void ShowMessage(const String& text) override {
    (Spare(), std::fprintf(stderr, "%s\n", text.Utf8().c_str()));
  }
  void WaitForInput(const std::vector<int>& descriptors, int milliseconds) override {
    pollfd fds[4]{{wake_, POLLIN, 0}};
    for (std::size_t i = 0; i < 3; ++i)
      fds[i + 1] = {i < descriptors.size() ? descriptors[i] : -1, POLLIN, 0};
    (Spare(), poll(fds, 4, milliseconds));
    if (eventfd_t woken; eventfd_read(wake_, &woken) == 0) EventLoop::RunPending();
  }
  Area ScreenArea() override { return {}; }
  void OpenAddress(const String&) override {}
  PictureRef ReadPicture(const std::string&) override { return nullptr; }
  bool CanEdit(EditCommand) override { return false; }
  void Edit(EditCommand) override {}

 private:
  int wake_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  std::atomic<bool> ended_ = false;
};

/// Longer than what takes its place.
const std::string kPreferences = "#\n1.3\n#\nyes\n#\nyes\n#\nyes\n#" + std::string(300, '#') + "\n";
const char* const kTool = R"(#!/bin/sh
[ $1 != list ] || printf '%s\n' '  Apple_HFS One   120.5 GB   disk1s2' '  Apple_HFS Two   1.5 TB   disk1s3'
[ $1 != info ] || echo '   Mounted:                  No'
[ $1 != mount ] || exit 3
)";

std::string NewPreferences(const std::string& feedback) {
  return "# Dravik's preferences version\n1.3\n# Scan on startup\nyes\n# Show feedback window'\n" + feedback +
         "\n# Show unMount button'\nyes\n# EOF\n";
}

}  // namespace

std::unique_ptr<Toolkit> Toolkit::Make(int&, char**) {
  return (Spare(), std::make_unique<User>());
}

int main() {
  std::string home = std::filesystem::temp_directory_path() / "dravik-faults-XXXXXX";
  if (!mkdtemp(home.data())) return 1;
  std::filesystem::current_path(home);
  std::ofstream("diskutil") << kTool;
  std::filesystem::permissions("diskutil", std::filesystem::perms::owner_all);
  setenv("PATH", home.c_str(), 1);
  setenv("XDG_CONFIG_HOME", home.c_str(), 1);

  const auto play = [] {
    const int status = _Main(0, nullptr);
    (Spare(), std::puts(TextOf("Dravik.prefs").c_str()));
    return status;
  };
  const auto judge = [](const faults::Run& good, const faults::Run& run) {
    const std::string now = TextOf("Dravik.prefs");  // the middle one is changed, where that came to be
    const bool kept = now == kPreferences || now == NewPreferences("yes") || now == NewPreferences("no");
    // There was not even the memory to open them, and the person knows.
    const bool unopened = run.code == ENOMEM && run.told.find("bad_alloc") != std::string::npos;
    if (WIFEXITED(run.status) && !kept && !unopened) return "the settings are lost";
    const bool misled = run.told.find("Error code: 127") != std::string::npos;
    return misled ? "a tool that is there is said to be missing" : run.WhatIsWrong(good);
  };
  const auto prepare = [] { std::ofstream("Dravik.prefs") << kPreferences; };
  const bool passed = faults::FailEachCall({"dravik", prepare, play, judge}, 120);
  std::filesystem::remove_all(home);
  return passed ? 0 : 1;
}
