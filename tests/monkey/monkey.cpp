// Random user actions in the program's real windows, shown off screen, over a diskutil that is slow, fails,
// dies, floods and prints garbage. They come in rounds, each a run of the program in a process of its own
// that quits, or is killed, at any moment. A round's seed gives the same actions again.

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "app/Startup.h"
#include "framework/EventLoop.h"
#include "tests/TextOf.h"
#include "windows/Window1.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kPatience = 40s;     // between two actions, before the program is said to hang
constexpr int kRest = 20;           // looks at a program at rest before it is said to be idle
constexpr int kLongestRound = 250;  // actions

const char* const kKeys[] = {"Return", "Space",  "Esc",    "Tab",    "Up",     "Down",    "Right",
                             "PgDown", "Home",   "Del",    "A",      "S",      "Alt+F",   "Alt+E",
                             "Ctrl+A", "Ctrl+C", "Ctrl+V", "Ctrl+X", "Ctrl+Z", "Ctrl+Tab"};

/// What a round shares with the process that watches it.
struct Shared {
  std::atomic<int> actions;
  std::atomic<const char*> doing;
};
Shared* shared = nullptr;

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "monkey: %s, after: %s\n", what.c_str(), shared->doing.load());
  std::abort();
}

/// With the baton.
bool Scanning() {
  return Window1()->scanTheBus1()->KillFd() >= 0;
}

QMessageBox* Message() {
  return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
}

template <class T>
T* OneOf(const QList<T*>& list, double fraction) {
  return list.isEmpty() ? nullptr : list[static_cast<int>(fraction * static_cast<double>(list.size()))];
}

/// A part of the window that a user can act on, or nullptr.
template <class T>
T* Part(const QWidget& window, double fraction) {
  QList<T*> parts = window.findChildren<T*>();
  parts.removeIf([](const T* part) { return !part->isVisible() || !part->isEnabled(); });
  return OneOf(parts, fraction);
}

QList<QWidget*> ShownWindows() {
  QList<QWidget*> windows = QApplication::topLevelWidgets();
  windows.removeIf([](const QWidget* window) { return !window->isVisible(); });
  std::ranges::sort(windows, {}, [](const QWidget* window) { return window->width(); });
  return windows;
}

QList<QAction*> MenuItems(const QWidget& window) {
  QList<QAction*> items;
  if (const auto* bar = window.findChild<QMenuBar*>())
    for (const QAction* menu : bar->actions()) items += menu->menu()->actions();
  return items;
}

void Click(QWidget* widget, QPoint position) {
  const QPointer<QWidget> part(widget);
  QTest::mousePress(part, Qt::LeftButton, {}, position);
  if (part) QTest::mouseRelease(part, Qt::LeftButton, {}, position);
}

class Round {
 public:
  Round(unsigned seed, int actions) : actions_(seed), moments_(seed), left_(actions) {}

  /// Comes again and again, also in the loops of message boxes and of handlers that wait.
  void Look() {
    if (EventLoop::Quitting()) return;
    // Mostly after a few milliseconds, at times after long enough for a whole scan.
    const int delay = 1 + static_cast<int>(250 * std::pow(Fraction(moments_), 8));
    QTimer::singleShot(delay, qApp, [this] { Look(); });
    if (Baton::HeldHere()) {  // a handler waits for its command, and so does the user's input
      if (Fraction(moments_) < 0.002) std::raise(SIGTERM);
      return;
    }
    Check();
    if (left_-- > 0)
      Act();
    else
      Finish();
  }

 private:
  void Check();
  void Act();
  void Finish();

  static double Fraction(std::mt19937& from) { return std::uniform_real_distribution<>(0, 1)(from); }

  std::mt19937 actions_, moments_;  // two, as the number of moments is another in each run
  int left_;
  int rest_ = 0;
  std::uint64_t disturbed_ = ~0ull;  // generation of rows that a press of Scan has cut off from their scan
};
Round* theRound = nullptr;

void Round::Check() {
  const Baton::Turn turn;
  const auto list = Window1()->ListBox2();
  if (Message() && Message()->text().contains("AlreadyRunning")) disturbed_ = list->Generation();
  const bool styled = !Scanning() && disturbed_ != list->Generation();
  for (int row = 0; row < list->ListCount(); ++row) {
    const bool bold = list->CellBold(row, 0), italic = list->CellItalic(row, 0);
    for (int column = 1; column < 4; ++column)
      if (list->CellBold(row, column) != bold || list->CellItalic(row, column) != italic)
        Fail("a row is torn");
    if ((bold && italic) || (styled && !bold && !italic)) Fail("a row tells no state");
  }
  if (!Scanning() && !Message() && _GetImplicitWindow("Window2.Window2")) Fail("the feedback window stays");
}

void Round::Act() {
  ++shared->actions;  // the pulse that the watching process feels
  double action = Fraction(actions_);
  const double which = Fraction(actions_), part = Fraction(actions_);
  const double x = Fraction(actions_), y = Fraction(actions_);
  QWidget* window = QApplication::activePopupWidget();
  if (!window) window = QApplication::activeModalWidget();
  if (!window) window = OneOf(ShownWindows(), which);
  if (!window) return;
  const auto* table = Part<QTableView>(*window, 0);
  QWidget* any = Part<QWidget>(*window, part);
  QWidget* spot = any && !(table && part < 0.4) ? any : table ? table->viewport() : window;
  const QPoint position(static_cast<int>(x * spot->width()), static_cast<int>(y * spot->height()));

  const auto is = [&](double share, const char* name) {
    if ((action -= share) >= 0) return false;
    shared->doing = name;
    return true;
  };
  if (is(0.36, "a press of a button")) {
    if (auto* button = Part<QAbstractButton>(*window, part)) Click(button, button->rect().center());
  } else if (is(0.35, "a click")) {
    Click(spot, position);
  } else if (is(0.14, "a key")) {
    const auto key = QKeySequence(kKeys[static_cast<std::size_t>(part * std::size(kKeys))])[0];
    QTest::keyClick(window->focusWidget() ? window->focusWidget() : window, key.key(),
                    key.keyboardModifiers());
  } else if (is(0.05, "a double click")) {
    QTest::mouseDClick(spot, Qt::LeftButton, {}, position);
  } else if (is(0.03, "a menu item")) {
    if (QAction* item = OneOf(MenuItems(*window), part)) item->trigger();
  } else if (is(0.015, "a resized window")) {
    window->resize(static_cast<int>(x * 1200), static_cast<int>(y * 900));
  } else if (is(0.01, "a closed window")) {
    window->close();
  } else {
    shared->doing = "nothing";
  }
}

/// Lets the program come to rest, closes what a user can close and quits in one of the ways there are.
void Round::Finish() {
  if (QWidget* popup = QApplication::activePopupWidget()) {
    popup->close();
  } else if (Message()) {
    QTest::keyClick(Message(), Qt::Key_Return);
  } else if ((Baton::Turn(), !Scanning()) && ++rest_ == kRest) {
    for (QWidget* window : ShownWindows())
      if (!window->findChild<QTableView*>()) window->close();
  } else if (rest_ == 2 * kRest) {
    if (ShownWindows().size() != 1) Fail("a window cannot be closed");
    shared->doing = "the quit of a round";
    const double way = Fraction(actions_);
    if (way < 0.3)
      ShownWindows().front()->close();
    else if (way < 0.6)
      MenuItems(*ShownWindows().front()).front()->trigger();
    else
      std::raise(SIGTERM);
  }
}

/// Qt warns of mistakes in the use of it with the name of one of its functions.
void HearQt(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (text.startsWith('Q') && text.contains("::")) Fail(text.toStdString());
}

void StartRound() {
  if (!theRound) return;
  qInstallMessageHandler(HearQt);
  QTimer::singleShot(0, qApp, [] { theRound->Look(); });
}
Q_COREAPP_STARTUP_FUNCTION(StartRound)

int RunRound(unsigned seed, char** argv) {
  std::mt19937 random(seed);
  const int actions = static_cast<int>(random() % kLongestRound);
  const bool killed = random() % 8 == 0;
  const auto killTime = Clock::now() + std::chrono::milliseconds(random() % 3000);
  setenv("MONKEY_SEED", std::to_string(random() % 1000000).c_str(), 1);
  shared->doing = "the start";
  const pid_t pid = fork();
  if (pid == 0) {
    Round round(seed, actions);
    theRound = &round;
    int argc = 1;
    std::exit(_Main(argc, argv));
  }
  int status = 0, seen = 0;
  for (auto lastSeen = Clock::now(); waitpid(pid, &status, WNOHANG) == 0; std::this_thread::sleep_for(5ms)) {
    if (std::exchange(seen, shared->actions) != shared->actions) lastSeen = Clock::now();
    if (killed && Clock::now() > killTime) kill(pid, SIGKILL);
    if (Clock::now() < lastSeen + kPatience) continue;
    std::fprintf(stderr, "monkey: hangs, after: %s\n", shared->doing.load());
    kill(pid, SIGABRT);
    lastSeen = Clock::now();
  }
  return killed && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL ? 0 : status;
}

/// A round with settings that depend on its seed.
bool RoundIsGood(unsigned seed, const std::filesystem::path& home, char** argv) {
  const auto word = [seed](unsigned bit) { return seed & bit ? "\nyes\n#" : "\nno\n#"; };
  const auto preferences = home / "Dravik.prefs";
  std::ofstream(preferences) << "#\n1.3\n#" << word(1) << word(2) << word(4) << '\n';
  std::filesystem::remove(home / "calls");
  const std::string before = TextOf(preferences);
  const int status = RunRound(seed, argv);
  const std::string after = TextOf(preferences);
  const bool whole = std::ranges::count(after, '\n') == 9 && after.ends_with("\n# EOF\n");
  if (status == 0 && (whole || after == before)) return true;
  std::fprintf(stderr, "monkey: seed %u ended with %#x and these preferences:\n%s\n", seed,
               static_cast<unsigned>(status), after.c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3 || std::atoi(argv[1]) <= 0) {
    std::puts("usage: dravik_monkey ACTIONS [SEED]\nSEED is that of the first round.");
    return 2;
  }
  void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  shared = new (memory) Shared{};
  std::string home = std::filesystem::temp_directory_path() / "dravik-monkey-XXXXXX";
  if (!mkdtemp(home.data())) return 1;
  std::filesystem::create_symlink(MONKEY_TOOL, home + "/diskutil");
  std::filesystem::create_symlink("/bin/true", home + "/xdg-open");
  setenv("PATH", (home + ":/usr/bin:/bin").c_str(), 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"}) setenv(folder, home.c_str(), 1);

  const int wanted = std::atoi(argv[1]);
  const unsigned first = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1;
  unsigned seed = first;
  while (shared->actions < wanted && RoundIsGood(seed, home, argv)) ++seed;
  std::error_code ignored;
  std::filesystem::remove_all(home, ignored);
  std::printf("%d actions in %u good rounds\n", shared->actions.load(), seed - first);
  return shared->actions < wanted ? 1 : 0;
}
