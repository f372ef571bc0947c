#pragma once

#include <functional>

/// This process's share of memory, in kilobytes: its own pages, and its part of those that others map too.
long ProportionalMemory();

/// Calls `then` once, when the first picture of a window has been handed to the screen. Call it with Qt's
/// application there and before its first window.
void AfterFirstPaint(std::function<void()> then);

/// Calls `then` on the main thread when what has been begun there has had the time to end.
void AfterAMoment(std::function<void()> then);
