#pragma once

#include <string>

// Where the program finds what is installed with it. Beside an executable "name" in a folder "bin" these are
// "libexec/name" and "share/name" one level up; in a build folder they stand beside the executable.

/// Folder of the program's own tools, empty when there is none.
std::string ToolFolder();

/// Folder of the program's resources, empty when there is none.
std::string ResourcesFolder();
