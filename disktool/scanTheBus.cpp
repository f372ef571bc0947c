#include "disktool/scanTheBus.h"

#include "framework/Application.h"
#include "framework/Messages.h"
#include "framework/Shell.h"
#include "framework/Text.h"
#include "windows/Window1.h"
#include "windows/Window2.h"

namespace {

constexpr Integer kLineFeed = 10;
constexpr Integer kCarriageReturn = 13;

}  // namespace

/// CR and LF each end a line, so a CR LF pair adds an empty row, which the filter takes out again. What
/// stands behind the last line end is no line.
void SplitIntoLines(const String& text, Listbox& lines) {
  const Integer limit = Len(text);
  String line;
  for (Integer position = 1; position <= limit; ++position) {
    const Integer code = Asc(Mid(text, position, 1));
    if (code == kLineFeed || code == kCarriageReturn) {
      lines.AddRow(line);
      line.Clear();
    } else {
      line += Chr(code);
    }
    YieldPoint();
  }
}

/// The whole line is looked at, not its type alone. From the bottom up, the rows still to come keep their
/// indexes.
void KeepPlainHfs(Listbox& lines) {
  for (int row = lines.ListCount() - 1; row >= 0; --row) {
    const String text = lines.Cell(row, 0);
    if (InStr(0, text, "HFS") == 0) lines.RemoveRow(row);
    if (InStr(0, text, "HFSX") != 0) lines.RemoveRow(row);
    YieldPoint();
  }
}

void scanTheBus::Event_Run() {
  const auto shell = New<Shell>();
  shell->Execute("diskutil list");
  if (shell->ErrorCode() > 0) {
    MsgBox("Error code: " + Str(shell->ErrorCode()));
    Quit(0);
    return;
  }
  const auto lines = Window1()->ListBox1();
  SplitIntoLines(shell->Result(), *lines);
  KeepPlainHfs(*lines);
  Window1()->setUpDisks();
  Window2()->Close();
}
