#pragma once

#include <QString>
#include <QStringView>
#include <string>
#include <utility>
#include <vector>

#include "framework/String.h"

/// A text of any shape in the form in which Qt's text widgets show it at once, and the way back to its bytes.
///
/// Qt lays out a paragraph as a whole, and keeps some hundred bytes for each. So a long line is cut into many
/// paragraphs, and in a long text a paragraph takes many short lines. A character that could do harm, and a
/// byte that is no text, is a surrogate without its other half: Qt shows it as U+FFFD, and no text has it.
class ShownText {
 public:
  /// A break on the screen that is no line feed in the text.
  struct Seam {
    int at;  // place among the shown characters
    char32_t standsFor;
  };
  using Seams = std::vector<Seam>;  // in the order of their places

  explicit ShownText(const String& text);

  static bool IsBreak(char32_t c);
  /// Whether the character could do harm on the screen, such as turn the direction of all text behind it.
  static bool HasStandIn(char32_t c);

  const QString& Characters() const { return characters_; }
  Seams TakeSeams() { return std::move(seams_); }

  /// The bytes of what is shown as `characters` from place `start` on.
  static std::string Bytes(QStringView characters, int start, const Seams& seams);

 private:
  template <class Text>
  void Build(Text text);

  QString characters_;
  Seams seams_;
};
