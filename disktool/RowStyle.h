#pragma once

#include "framework/Listbox.h"

// How the table tells a volume's state. A row's style is the only record of it.

void StyleAsMounted(Listbox& table, int row);
void StyleAsNotMounted(Listbox& table, int row);
