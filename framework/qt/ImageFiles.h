#pragma once

#include <QIcon>
#include <string>

#include "framework/Picture.h"

/// The icon that is installed with the program, for window managers that do not look into its desktop entry.
/// Empty where there is none.
QIcon InstalledIcon();

/// Reads a picture in any of the formats that Qt knows. Nil when that fails, and for one that is larger than
/// 4096 pixels on a side.
PictureRef ReadImage(const std::string& path);
