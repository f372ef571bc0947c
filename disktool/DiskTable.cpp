#include "disktool/RowStyle.h"
#include "framework/Shell.h"
#include "framework/Text.h"
#include "framework/Thread.h"
#include "windows/Window1.h"

// The table is cut out of lines of this shape by searching for tokens; only the size has a fixed width.
//
//    2:                  Apple_HFS Backup                  120.5 GB   disk0s2
//                                 ^ name, up to two blanks  ^ 8 + 2   ^ identifier, up to the end
//
// No search is checked for having found anything: a line that lacks a part still makes a row.

namespace {

constexpr Integer kTypeLength = 9;      // of "Apple_HFS"
constexpr Integer kSizeLead = 8;        // characters of a size in front of its unit
constexpr Integer kSizeLength = 10;     // with the two of the unit
constexpr Integer kMountedOffset = 26;  // from the label "Mounted:" to its value
constexpr Integer kMountedLength = 3;

String NameIn(const String& line) {
  const Integer start = InStr(1, line, "Apple_HFS") + kTypeLength;
  const Integer stop = InStr(start, line, "  ");
  return Trim(Mid(line, start, stop - start));
}

String SizeIn(const String& line) {
  Integer unit = InStr(0, line, "TB");
  if (unit == 0) {
    unit = InStr(0, line, "GB");
  } else if (unit == 0) {  // never: megabytes are not looked for, and such a row shows no size
    unit = InStr(0, line, "MB");
  }
  return Trim(Mid(line, unit - kSizeLead, kSizeLength));
}

String IdentifierIn(const String& line) {
  const Integer disk = InStr(0, line, "disk");
  return Trim(Mid(line, disk, Len(line)));
}

/// The report says "   Mounted:                  Yes" or "No", which the line's end follows.
bool SaysMounted(const String& report) {
  const Integer mark = InStr(0, report, "Mounted:");
  return Trim(Mid(report, mark + kMountedOffset, kMountedLength)) == "yes";
}

}  // namespace

void Window1::setUpDisks() {
  auto shell = New<Shell>();
  shell = New<Shell>();  // the one that all rows use; the first is made, as ever, and runs nothing
  const int last = ListBox1()->ListCount() - 1;
  for (int i = 0; i <= last; ++i) {
    const String line = ListBox1()->Cell(i, 0);
    ListBox2()->AddRow(NameIn(line));
    ListBox2()->Cell(i, 1, SizeIn(line));
    ListBox2()->CellAlignment(i, 1, 3);
    ListBox2()->Cell(i, 3, IdentifierIn(line));
    shell->Execute("diskutil info " + ListBox2()->Cell(i, 3));
    if (SaysMounted(shell->Result()))
      StyleAsMounted(*ListBox2(), i);
    else
      StyleAsNotMounted(*ListBox2(), i);
    YieldPoint();
  }
}
