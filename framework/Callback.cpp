#include "framework/Callback.h"

#include <cstdio>
#include <exception>

namespace {

void RunAndReport(const std::function<void()>& callback) {
  try {
    callback();
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "An exception of the class %s was not handled.\n", exception.what());
  }
}

void (*installed)(const std::function<void()>&) = RunAndReport;

}  // namespace

void InstallCallbackRoutine(void (*routine)(const std::function<void()>&)) {
  installed = routine;
}

void RunCallback(const std::function<void()>& callback) {
  installed(callback);
}
