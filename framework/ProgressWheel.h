#pragma once

#include "framework/Control.h"

/// A wheel that turns as long as it shows.
class ProgressWheel : public Control {};
