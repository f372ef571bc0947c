#pragma once

#include <functional>

/// Runs it on another thread, which then waits for the next: on a busy machine a thread for each command took
/// a fifth of a quick one's time. One that hangs is left to itself, and the next call gets another. What is
/// run throws nothing. Throws std::system_error where no thread can be had. Any thread may call it.
void StartOnThread(std::function<void()> start);
