#pragma once

#include <functional>

/// Runs it on another thread, which then waits for the next: a thread for each would cost a quick command
/// some percent of its time. One that hangs is left to itself, and the next call gets another. What is run
/// throws nothing. Throws std::system_error where no thread can be had. Any thread may call it.
void StartOnThread(std::function<void()> start);
