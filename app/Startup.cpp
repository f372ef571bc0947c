#include "app/Startup.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "app/App.h"
#include "app/FileTypes.h"
#include "app/MenuBar1.h"
#include "framework/Callback.h"
#include "windows/Window1.h"

namespace {

void ReleaseGlobals() {
  ReleaseMenuBar1();
  FileTypes::pText = nullptr;
}

}  // namespace

int _Main(int argc, char** argv) {
  try {
    Application::Start(argc, argv);
    InstallCallbackRoutine(_CallFunctionWithExceptionHandling);
    _EarlyStartup();
  } catch (const std::exception& exception) {  // too early for a message box
    std::fprintf(stderr, "Dravik cannot start: %s.\n", exception.what());
    Application::Shutdown();
    return EXIT_FAILURE;
  }
  Application::RunFrameworkInitialization(_LateStartup);
  Application::RunEventLoop();
  ReleaseGlobals();
  return Application::Shutdown();
}

void _EarlyStartup() {
  _InitFileTypes();
  _NewAppInstance();
  _ApplicationAddMenuHandlers();
}

void _LateStartup() {
  _MakeDefaultView();
}

void _InitFileTypes() {
  FileTypes::_Initialize();
}

void _NewAppInstance() {
  const auto app = New<class App>();
  app->MenuBar = MenuBar1();
  Application::Register(app);
}

void _ApplicationAddMenuHandlers() {
  App()->_AddMenuHandler("AppleAbout", [] { return App()->_AppleAbout_Action(); });
}

void _MakeDefaultView() {
  Window1();
}
