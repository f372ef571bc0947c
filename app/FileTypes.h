#pragma once

#include "framework/FileType.h"

/// The file types that the program declares. No file passes through them.
namespace FileTypes {

extern Ref<FileType> pText;

void _Initialize();

}  // namespace FileTypes
