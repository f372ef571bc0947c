#pragma once

#include <functional>

/// Has all callbacks of the program run by this function, which treats what they do not catch. Before it is
/// called, an exception is told on standard error.
void InstallCallbackRoutine(void (*routine)(const std::function<void()>&));

/// Runs a callback of the program by the routine that was installed.
void RunCallback(const std::function<void()>& callback);
