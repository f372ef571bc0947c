#include "framework/qt/QtToolkit.h"

#include <QProcess>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <iterator>
#include <system_error>
#include <thread>
#include <utility>

#include "framework/Application.h"
#include "framework/EventLoop.h"
#include "framework/qt/Accessibility.h"
#include "framework/qt/MessageBox.h"

namespace {

constexpr int kWakeInterval = 33;    // milliseconds between two updates that other threads ask for
constexpr int kPresentLimit = 1000;  // milliseconds
constexpr std::chrono::milliseconds kOpenerLimit{200};

constexpr QEventLoop::ProcessEventsFlags kAllButInput =
    QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents;

QtMessageHandler usualHandler = nullptr;

/// Takes for ever where a folder of PATH hangs.
void StartOpener(const QString& address) {
  QProcess opener;
#ifdef Q_OS_MACOS
  opener.setProgram("/usr/bin/open");
#else
  opener.setProgram("xdg-open");
#endif
  opener.setArguments({address});
  opener.setStandardInputFile(QProcess::nullDevice());
  opener.setStandardOutputFile(QProcess::nullDevice());
  opener.setStandardErrorFile(QProcess::nullDevice());
  if (!opener.startDetached())
    std::fprintf(stderr, "%s: %s\n", qPrintable(opener.program()), qPrintable(opener.errorString()));
}

/// Qt aborts where it reaches no display, and advises to install the program anew. Where a Wayland display
/// goes away it says so and ends the process at once, on whatever thread: the words are the only sign.
void HandleQtMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (type == QtFatalMsg && text.contains("platform plugin")) {
    std::fputs("No window can be shown: there is no display, or it cannot be reached.\n", stderr);
    std::_Exit(EXIT_FAILURE);
  }
  usualHandler(type, context, text);
  if (text.startsWith("The Wayland connection")) Application::DisplayHasGone();
}

}  // namespace

std::unique_ptr<Toolkit> Toolkit::Make(int& argc, char** argv) {
  usualHandler = qInstallMessageHandler(HandleQtMessage);
  return std::make_unique<QtToolkit>(argc, argv);
}

QtToolkit::QtToolkit(int& argc, char** argv)
    : program_(argc, argv), frontWindow_([this] {
        const WindowView* front = Front();
        return front ? front->ShownWindow() : nullptr;
      }) {
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QGuiApplication::setLayoutDirection(Qt::LeftToRight);  // as are the texts and the places of the controls
  QGuiApplication::setDesktopFileName(QCoreApplication::applicationName());
  signals_.Listen();
  InstallAccessibility();
  QObject::connect(&program_, &QGuiApplication::commitDataRequest, &program_,
                   [] { Application::QuitFromOutside(); });
  QObject::connect(&program_, &QGuiApplication::focusWindowChanged, &program_, [this] {
    if (auto* view = dynamic_cast<WindowView*>(QApplication::activeWindow())) lastActive_ = view;
  });
  QObject::connect(&program_, &QApplication::focusChanged, &program_,
                   [this](QWidget*, QWidget* now) { editedText_.FocusMovedTo(now); });
}

QtToolkit::~QtToolkit() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool QtToolkit::Program::event(QEvent* event) {
  if (event->type() != QEvent::Quit) return QApplication::event(event);
  EventLoop::Record([] { Quit(0); });
  return true;
}

void QtToolkit::EndLater::operator()(WindowView* view) const {
  view->hide();
  view->deleteLater();
}

void QtToolkit::RunLoop() {
  if (ended_) return;
  QGuiApplication::setWindowIcon(InstalledIcon());  // the first picture has not waited for it
  loop_.exec();
}

void QtToolkit::EndLoop() {
  ended_ = true;
  loop_.quit();
  for (MessageBox* box : messages_) box->done(MessageBox::Ok);
}

void QtToolkit::Wake() {
  if (woken_.exchange(true)) return;
  QMetaObject::invokeMethod(
      &program_,
      [this] {
        const std::chrono::milliseconds rest(nextWake_.remainingTime());
        QTimer::singleShot(rest, Qt::PreciseTimer, &program_, [this] { RunWoken(); });
      },
      Qt::QueuedConnection);
}

void QtToolkit::RunWoken() {
  woken_ = false;
  nextWake_.setRemainingTime(kWakeInterval);
  EventLoop::RunPending();
}

void QtToolkit::Update(const std::vector<Ref<Window>>& open, const Ref<MenuBar>& bar) {
  CopyApplicationBar(bar);
  const std::vector<View> going = TakeClosed(open);
  std::vector<Ref<Window>> coming;
  for (const auto& window : open) {
    if (WindowView* view = Find(window.Get())) {
      view->Copy();
    } else if (window->Visible) {
      WindowView* owner = views_.empty() ? nullptr : views_.front().get();
      views_.emplace_back(new WindowView(window, owner, frontWindow_));
      coming.push_back(window);
    }
  }
  // New windows are painted before old ones go, so that no gap shows.
  if (going.empty()) return;
  for (const auto& window : coming) Present(*window);
}

/// Takes out the views of windows that are no longer open. They stay on the screen as long as they are held.
std::vector<QtToolkit::View> QtToolkit::TakeClosed(const std::vector<Ref<Window>>& open) {
  std::vector<View> taken;
  const auto isOpen = [&](const View& view) {
    return std::find(open.begin(), open.end(), view->ShownWindow()) != open.end();
  };
  const auto first = std::stable_partition(views_.begin(), views_.end(), isOpen);
  std::move(first, views_.end(), std::back_inserter(taken));
  views_.erase(first, views_.end());
  return taken;
}

void QtToolkit::CopyApplicationBar(const Ref<MenuBar>& bar) {
  if (!kOneBarForAll || !bar) return;
  if (!applicationBar_) {
    applicationBar_ = std::make_unique<QMenuBar>(nullptr);
    applicationMenus_ = std::make_unique<MenuView>(*applicationBar_, bar, frontWindow_);
  }
  applicationMenus_->Copy();
}

WindowView* QtToolkit::Find(const Window* window) const {
  const auto found =
      std::ranges::find(views_, window, [](const View& view) { return view->ShownWindow().Get(); });
  return found == views_.end() ? nullptr : found->get();
}

WindowView* QtToolkit::Front() const {
  if (lastActive_ && lastActive_->isVisible()) return lastActive_;
  return views_.empty() ? nullptr : views_.back().get();
}

void QtToolkit::Present(Window& window) {
  const QPointer<WindowView> view = Find(&window);
  const QDeadlineTimer limit(kPresentLimit);
  QTimer end;  // of the wait, if nothing happens
  end.start(kPresentLimit);
  while (view && !view->Painted() && !ended_ && !limit.hasExpired())
    QCoreApplication::processEvents(kAllButInput);
}

void QtToolkit::ShowMessage(const String& text) {
  MessageBox box(text);
  if (const WindowView* front = Front()) box.StandOver(*front, views_.front()->windowTitle());
  messages_.push_back(&box);
  box.exec();
  std::erase(messages_, &box);
}

void QtToolkit::WaitForInput(const std::vector<int>& descriptors, int milliseconds) {
  std::vector<std::unique_ptr<QSocketNotifier>> notifiers;
  for (const int descriptor : descriptors)
    if (descriptor >= 0)
      notifiers.push_back(std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read));
  QTimer limit;
  if (milliseconds >= 0) limit.start(milliseconds);
  QCoreApplication::processEvents(kAllButInput);
}

Area QtToolkit::ScreenArea() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (!screen) return {};
  const QRect area = screen->availableGeometry();
  return {area.x(), area.y(), area.width(), area.height()};
}

void QtToolkit::OpenAddress(const String& address) {
  const QString text = QString::fromStdString(address.Utf8());
  if (text.startsWith('-')) return;  // which the desktop's opener would take for an option of its own
  std::packaged_task<void()> open([text] { StartOpener(text); });
  const std::future<void> opened = open.get_future();
  try {
    std::thread(std::move(open)).detach();
    opened.wait_for(kOpenerLimit);
  } catch (const std::system_error& error) {
    std::fprintf(stderr, "%s\n", error.what());
  }
}
