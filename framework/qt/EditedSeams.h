#pragma once

#include <vector>

#include "framework/qt/ShownText.h"

/// The seams of a text that is being edited.
class EditedSeams {
 public:
  void Set(ShownText::Seams seams);
  const ShownText::Seams& Get() const { return seams_; }

  /// The user has put `added` characters, with such seams counted from the first of them, in the place of
  /// others.
  void Edit(int from, int removed, int added, const ShownText::Seams& newSeams);
  /// The last edits have been undone.
  void Undo(int from, int removed, int added);

 private:
  struct Piece {
    int from, size;
    ShownText::Seams seams;
  };
  Piece Cut(int from, int size);
  void Paste(const Piece& piece);

  ShownText::Seams seams_;
  std::vector<Piece> cuts_;  // that can be undone, the last one last
};
