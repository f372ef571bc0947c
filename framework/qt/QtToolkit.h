#pragma once

#include <QApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QPointer>
#include <atomic>
#include <memory>
#include <vector>

#include "framework/Toolkit.h"
#include "framework/qt/EditedText.h"
#include "framework/qt/ImageFiles.h"
#include "framework/qt/SignalWatch.h"
#include "framework/qt/WindowView.h"

class MessageBox;

/// Shows the framework's windows with Qt Widgets.
class QtToolkit final : public Toolkit {
 public:
  QtToolkit(int& argc, char** argv);
  ~QtToolkit() override;

  void RunLoop() override;
  void EndLoop() override;
  void Wake() override;
  void Update(const std::vector<Ref<Window>>& open, const Ref<MenuBar>& bar) override;
  void Present(Window& window) override;
  void ShowMessage(const String& text) override;
  void WaitForInput(const std::vector<int>& descriptors, int milliseconds) override;
  Area ScreenArea() override;
  void OpenAddress(const String& address) override;
  PictureRef ReadPicture(const std::string& path) override { return ReadImage(path); }
  bool CanEdit(EditCommand command) override { return editedText_.Can(command); }
  void Edit(EditCommand command) override { editedText_.Do(command); }

 private:
  /// The event in which a view ends may be one that the view is handling.
  struct EndLater {
    void operator()(WindowView* view) const;
  };
  using View = std::unique_ptr<WindowView, EndLater>;

  /// Qt's application, which the desktop may ask to quit.
  class Program final : public QApplication {
   public:
    using QApplication::QApplication;

   protected:
    bool event(QEvent* event) override;
  };

  void RunWoken();
  std::vector<View> TakeClosed(const std::vector<Ref<Window>>& open);
  WindowView* Find(const Window* window) const;
  WindowView* Front() const;
  void CopyApplicationBar(const Ref<MenuBar>& bar);

  SignalWatch signals_;
  Program program_;
  QEventLoop loop_;
  bool ended_ = false;

  std::atomic<bool> woken_ = false;
  QDeadlineTimer nextWake_;  // the earliest

  std::vector<View> views_;  // in the order in which the windows were opened
  QPointer<WindowView> lastActive_;
  EditedText editedText_;
  const MenuView::Front frontWindow_;
  std::unique_ptr<QMenuBar> applicationBar_;  // where there is one for all windows
  std::unique_ptr<MenuView> applicationMenus_;
  std::vector<MessageBox*> messages_;  // that are up
};
