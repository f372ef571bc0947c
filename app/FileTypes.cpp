#include "app/FileTypes.h"

Ref<FileType> FileTypes::pText;

void FileTypes::_Initialize() {
  pText = New<FileType>();
  pText->Name = "text";
  pText->Extensions = "";
  pText->MacType = "TEXT";
  pText->MacCreator = "R*ch";
}
