#pragma once

#include <string>

/// A variable of the environment, `otherwise` where it is not set.
std::string Environment(const char* name, const char* otherwise = "");

/// Folder of the user's preferences; empty where no home can be told. It need not be there.
std::string PreferencesFolder();

// Where the program finds what is installed with it. Beside an executable "name" in a folder "bin" these are
// "libexec/name" and "share/name" one level up; in a build folder they stand beside the executable.

/// Folder of the program's own tools, empty when there is none.
std::string ToolFolder();

/// Folder of the program's resources, empty when there is none.
std::string ResourcesFolder();
