#pragma once

#include <functional>
#include <string>

#include "framework/Object.h"
#include "framework/Picture.h"
#include "framework/String.h"
#include "framework/TextInputStream.h"
#include "framework/TextOutputStream.h"

/// A file or folder by its path, whether or not there is such a thing.
class FolderItem : public Object {
 public:
  explicit FolderItem(std::string path) : path_(std::move(path)) {}

  /// The item of that name inside this folder.
  Ref<FolderItem> Child(const String& name) const;
  /// False only when it is known to be missing: settings that cannot be looked at are not overwritten.
  bool Exists() const;
  /// A stream at the start of the file; nil when it is no readable regular file.
  Ref<TextInputStream> OpenAsTextFile() const;
  /// A stream on an empty file of that name, in place of one that is there; nil when it cannot be written,
  /// and when somebody wanted to read what is there, and could not.
  Ref<TextOutputStream> CreateTextFile() const;
  /// The picture in the file, nil when it cannot be read.
  PictureRef OpenAsPicture() const;

  /// What reads picture files of formats the framework does not read by itself, and gives nil for those it
  /// cannot read. Without one there are no such pictures.
  using PictureReader = std::function<PictureRef(const std::string& path)>;
  static void InstallPictureReader(PictureReader reader);

 private:
  std::string path_;
};

/// Folders that the platform has a place for.
class SpecialFolder {
 public:
  /// The user's preferences folder, made where it is missing; nil where no place for it can be told. On Linux
  /// $XDG_CONFIG_HOME or ~/.config, on the Mac ~/Library/Preferences.
  static Ref<FolderItem> Preferences();
};

/// The folder of the program's resources, or nil.
Ref<FolderItem> _GetApplicationBundleResources();
