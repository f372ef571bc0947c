#include "app/App.h"
#include "disktool/RowStyle.h"
#include "framework/Messages.h"
#include "framework/Shell.h"
#include "framework/Text.h"
#include "windows/Window1.h"
#include "windows/Window2.h"

// Both methods read the row that is selected at that moment and style the row they were given, by what was
// asked for and not by what happened: only the next scan tells the truth again. They differ on purpose in
// when the feedback window shows, in which codes are reported, and in the spelling of the verb.

void Window1::mountThisDisk(int row) {
  if (App()->showFeedbackWin) {
    Window2()->staticTitle()->Text = "Executing the command 'diskutil mount'";
    Window2()->StaticText1()->Text =
        "Mounting «" + ListBox2()->Cell(ListBox2()->ListIndex(), 0) + "»." + Chr(13) + "Please wait...";
    Window2()->Show();
  }
  const auto shell = New<Shell>();
  shell->Execute("diskutil mount " + ListBox2()->Cell(ListBox2()->ListIndex(), 3));
  if (shell->ErrorCode() > 0) MsgBox("Error code: " + Str(shell->ErrorCode()));
  Window2()->Close();
  StyleAsMounted(*ListBox2(), row);
}

void Window1::unMountThisDisk(int row) {
  // Deliberately passed over in silence for this one command; a mount that ends with it is told. It is the
  // exit status 1 as `waitpid` gives it, undecoded, which our shell never does.
  constexpr int kSilentCode = 256;
  Window2()->staticTitle()->Text = "Executing the command 'diskutil unmount'";
  Window2()->StaticText1()->Text =
      "unMounting «" + ListBox2()->Cell(ListBox2()->ListIndex(), 0) + "»." + Chr(13) + "Please wait...";
  Window2()->Show();
  const auto shell = New<Shell>();
  shell->Execute("diskutil unMount " + ListBox2()->Cell(ListBox2()->ListIndex(), 3));
  if (shell->ErrorCode() > 0 && shell->ErrorCode() != kSilentCode)
    MsgBox("Error code: " + Str(shell->ErrorCode()));
  Window2()->Close();
  StyleAsNotMounted(*ListBox2(), row);
}
