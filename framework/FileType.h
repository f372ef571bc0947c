#pragma once

#include "framework/Object.h"
#include "framework/String.h"

/// A kind of file, as the platform's file dialogs and its desktop know it.
class FileType : public Object {
 public:
  String Name;
  String Extensions;
  String MacType;
  String MacCreator;
};
