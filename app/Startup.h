#pragma once

// The program from its start to its end, in an order that matters: the application object and the menu bar
// first, then the settings, then the main window, which acts on them at once, then the event loop.

/// Runs the program. Returns its exit status.
int _Main(int argc, char** argv);

void _EarlyStartup();
void _LateStartup();

void _InitFileTypes();
void _NewAppInstance();
void _ApplicationAddMenuHandlers();
void _MakeDefaultView();
