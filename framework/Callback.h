#pragma once

#include <functional>

/// From now on this function runs all callbacks of the program and treats what they do not catch. Without
/// one, an exception is told on standard error.
void InstallCallbackRoutine(void (*routine)(const std::function<void()>&));

/// Runs a callback of the program by the routine that was installed.
void RunCallback(const std::function<void()>& callback);
