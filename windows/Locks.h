#pragma once

#include "framework/Control.h"

/// The edges in the tables of the windows.
constexpr Locks L = kLockLeft;
constexpr Locks T = kLockTop;
constexpr Locks R = kLockRight;
constexpr Locks B = kLockBottom;
