#pragma once

#include "framework/String.h"

/// Shows a message with one button and returns when the user has dismissed it. The baton is given away
/// meanwhile. On any thread of the program.
void MsgBox(const String& text);

/// From now on messages go to standard error, as nobody may be there to dismiss one. Any thread.
void SilenceMessages();
