#include "framework/Messages.h"
#include "framework/Shell.h"
#include "framework/Text.h"
#include "windows/Window1.h"
#include "windows/Window2.h"
#include "windows/Window3.h"

void Window1::infoBtn_Action(Ref<PushButton>) {
  Window2()->staticTitle()->Text = "Executing the command 'diskutil info'" + Chr(13);
  Window2()->StaticText1()->Text =
      "Reading info for «" + ListBox2()->Cell(ListBox2()->ListIndex(), 0) + "»." + Chr(13) + "Please wait...";
  Window2()->Show();
  const auto shell = New<Shell>();
  shell->Execute("diskutil info " + ListBox2()->Cell(ListBox2()->ListIndex(), 3));
  if (shell->ErrorCode() > 0) {
    MsgBox("Error code: " + Str(shell->ErrorCode()));
  } else {
    Window3()->staticTitle()->Text = "diskutil info for: " + ListBox2()->Cell(ListBox2()->ListIndex(), 0) +
                                     " (" + ListBox2()->Cell(ListBox2()->ListIndex(), 3) + ")";
    Window3()->infoFld()->Text = shell->Result();
  }
  Window2()->Close();
}
