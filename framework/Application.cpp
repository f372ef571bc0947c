#include "framework/Application.h"

#include <cxxabi.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <system_error>
#include <thread>
#include <typeinfo>
#include <utility>

#include "framework/Baton.h"
#include "framework/Callback.h"
#include "framework/CleanStart.h"
#include "framework/EventLoop.h"
#include "framework/FolderItem.h"
#include "framework/Messages.h"
#include "framework/Screen.h"
#include "framework/Thread.h"
#include "framework/Toolkit.h"
#include "framework/Window.h"

namespace {

struct RunState {
  Ref<Application> application;
  std::thread::id mainThread;
  std::atomic<bool> displayGone = false;
  std::atomic<int> exitStatus = 0;
};

RunState& TheRun() {
  static RunState run;
  return run;
}

/// Ends the program from the middle of whatever the main thread does: threads end, the application's close
/// event runs, and windows cannot be closed any more. Also run by `exit`, with which a toolkit may end the
/// process.
void LeaveWithoutDisplay() {
  RunState& run = TheRun();
  if (!run.application) return;  // the ordinary end
  SilenceMessages();
  EventLoop::BeginQuit();
  const Baton::Pause pause;
  Thread::EndAll();
  const Baton::Turn turn;
  EventLoop::RunHandler([&] { run.application->Event_Close(); });
  std::_Exit(EXIT_FAILURE);
}

std::string ClassName(const std::exception& exception) {
  const char* const mangled = typeid(exception).name();
  int failed = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(mangled, nullptr, nullptr, &failed), std::free);
  return name ? name.get() : mangled;
}

/// Without the memory for a message there is one line on standard error, and the program goes on.
void ShowException(const std::string& name) {
  try {
    MsgBox("An exception of the class " + String(name) + " was not handled.");
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "%s\n", exception.what());
  }
}

}  // namespace

void Application::_AddMenuHandler(const String& name, MenuHandlers::Handler handler) {
  handlers_.Add(name, std::move(handler));
}

Ref<Application> Application::Current() {
  return TheRun().application;
}

void Application::Register(const Ref<Application>& application) {
  TheRun().application = application;
}

void Application::Start(int& argc, char** argv) {
  if (!CleanStart()) throw std::system_error(errno, std::generic_category(), "Could not open /dev/null");
  TheRun().mainThread = std::this_thread::get_id();
  EventLoop::Start(Toolkit::Make(argc, argv),
                   [] { return Current() ? Current()->MenuBar : Ref<::MenuBar>(); });
  FolderItem::InstallPictureReader(
      [](const std::string& path) { return EventLoop::Toolkit()->ReadPicture(path); });
}

void Application::RunFrameworkInitialization(void (*lateStartup)()) {
  const Baton::Turn turn;
  EventLoop::RunHandler([] { TheRun().application->Event_Open(); });
  [[maybe_unused]] static const int registered = std::atexit(LeaveWithoutDisplay);
  bool started = false;
  EventLoop::RunHandler([&] {
    lateStartup();
    started = true;
  });
  if (!started) Quit(EXIT_FAILURE);  // without its window nobody could ever end the program
  EventLoop::EndEvent();
  // With the baton still here: the picture of a window comes before the work of a thread that it has started.
  std::size_t presented = 0;  // no loop over the list itself, which changes when a handler runs meanwhile
  while (presented < Window::OpenWindows().size())
    Screen::Installed().Present(*Ref<Window>(Window::OpenWindows()[presented++]));
}

void Application::RunEventLoop() {
  RunState& run = TheRun();
  EventLoop::Run();
  if (run.displayGone) LeaveWithoutDisplay();
  Thread::EndAll();

  const Baton::Turn turn;
  while (!Window::OpenWindows().empty()) {
    const Ref<Window> last = Window::OpenWindows().back();
    EventLoop::RunHandler(
        [&] { last->Close(); });  // which also takes out one whose close event raises something
  }
  EventLoop::UpdateScreen();
  EventLoop::RunHandler([&] { run.application->Event_Close(); });
}

int Application::Shutdown() {
  TheRun().application = nullptr;
  EventLoop::Shutdown();
  return TheRun().exitStatus;
}

void Application::QuitFromOutside() {
  SilenceMessages();
  EventLoop::BeginQuit();
  EventLoop::EndSoon();  // and the end of a message that has come up since the program quits
}

void Application::DisplayHasGone() {
  constexpr auto kTimeToLeave = std::chrono::seconds(2);
  RunState& run = TheRun();
  if (std::this_thread::get_id() == run.mainThread) {
    LeaveWithoutDisplay();
  } else if (EventLoop::Toolkit()) {
    run.displayGone = true;
    QuitFromOutside();
    std::this_thread::sleep_for(kTimeToLeave);  // in which the main thread ends the process
  }
}

void Quit(int exitStatus) {
  if (!EventLoop::BeginQuit()) return;
  TheRun().exitStatus = exitStatus;
  Thread::KillAll();
  EventLoop::EndSoon();
}

void ShowURL(const String& address) {
  EventLoop::Toolkit()->OpenAddress(address);
}

void _CallFunctionWithExceptionHandling(const std::function<void()>& callback) {
  try {
    callback();
  } catch (const RuntimeException& exception) {
    ShowException(exception.what());
  } catch (const std::exception& exception) {  // of a library, which says what happened and not what it is
    std::fprintf(stderr, "%s\n", exception.what());
    ShowException(ClassName(exception));
  }
}
