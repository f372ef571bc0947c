#include "framework/qt/EditedSeams.h"

#include <algorithm>
#include <utility>

void EditedSeams::Set(ShownText::Seams seams) {
  seams_ = std::move(seams);
  cuts_.clear();
}

void EditedSeams::Edit(int from, int removed, int added, const ShownText::Seams& newSeams) {
  cuts_.push_back(Cut(from, removed));
  Paste({from, added, newSeams});
}

/// Qt may undo several edits at once, and tells of them as of one.
void EditedSeams::Undo(int from, int removed, int added) {
  Cut(from, removed);
  while (!cuts_.empty() && cuts_.back().size <= added) {
    Paste(cuts_.back());
    added -= cuts_.back().size;
    cuts_.pop_back();
  }
  Paste({from, added, {}});
}

EditedSeams::Piece EditedSeams::Cut(int from, int size) {
  const auto first = std::ranges::lower_bound(seams_, from, {}, &ShownText::Seam::at);
  const auto last = std::ranges::lower_bound(first, seams_.end(), from + size, {}, &ShownText::Seam::at);
  Piece piece{from, size, {first, last}};
  for (auto& seam : piece.seams) seam.at -= from;
  for (auto seam = seams_.erase(first, last); seam != seams_.end(); ++seam) seam->at -= size;
  return piece;
}

void EditedSeams::Paste(const Piece& piece) {
  auto seam = std::ranges::lower_bound(seams_, piece.from, {}, &ShownText::Seam::at);
  for (auto behind = seam; behind != seams_.end(); ++behind) behind->at += piece.size;
  seam = seams_.insert(seam, piece.seams.begin(), piece.seams.end());
  for (auto end = seam + std::ssize(piece.seams); seam != end; ++seam) seam->at += piece.from;
}
