#include "windows/Pictures.h"

#include "framework/FolderItem.h"

namespace {

/// One picture: its holder, and whether the holder has been set up.
class KeptPicture {
 public:
  explicit KeptPicture(const char* fileName) : fileName_(fileName) {}

  PictureRef Get() {
    if (!isSetUp_) {
      isSetUp_ = true;
      picture_ = nullptr;
    }
    if (!picture_)
      if (const auto resources = _GetApplicationBundleResources())
        picture_ = resources->Child(fileName_)->OpenAsPicture();
    return picture_;
  }

 private:
  const char* fileName_;
  bool isSetUp_ = false;
  PictureRef picture_;
};

}  // namespace

PictureRef logo64x64() {
  static auto& kept = *new KeptPicture("logo64x64.pct");  // threads outlive statics
  return kept.Get();
}

PictureRef paypal() {
  static auto& kept = *new KeptPicture("paypal.gif");
  return kept.Get();
}
