#include "windows/Pictures.h"

#include "framework/FolderItem.h"

namespace {

PictureRef Read(const char* fileName) {
  const auto resources = _GetApplicationBundleResources();
  return resources ? resources->Child(fileName)->OpenAsPicture() : nullptr;
}

}  // namespace

PictureRef logo64x64() {
  static auto& kept = *new PictureRef;  // threads outlive statics
  return kept ? kept : kept = Read("logo64x64.pct");
}

PictureRef paypal() {
  static auto& kept = *new PictureRef;
  return kept ? kept : kept = Read("paypal.gif");
}
