#include "framework/qt/Speaker.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <chrono>
#include <utility>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr auto kNoticeLifetime = 5s;  // in which a screen reader asks what a notice says
constexpr auto kConnectTime = 1s;     // from Qt's word that somebody listens until events really go out
constexpr auto kStartTime = 10s;      // in which somebody who listens has been connected

/// Says things, and keeps what is to be said before anybody can hear it.
class Speaker final : public QObject, public QAccessible::ActivationObserver {
 public:
  Speaker() { sinceStart_.start(); }

  void Say(QWidget& window, const QString& text) {
    ++times_;
    if (connected_)
      new Notice(window, text);
    else if (IsHeard())
      kept_.push_back({&window, text});
  }
  int Times() const { return times_; }
  bool IsHeard() const { return listening_ || Starting(); }

  void accessibilityActiveChanged(bool active) override {
    listening_ = active;
    connected_ = false;
    if (!Starting()) kept_.clear();  // it has long been over
    if (active) QTimer::singleShot(kConnectTime, this, &Speaker::SayKept);
  }

 private:
  struct Kept {
    QPointer<QWidget> window;
    QString text;
  };

  bool Starting() const { return !sinceStart_.hasExpired(kStartTime / 1ms); }

  void SayKept() {
    connected_ = listening_;
    for (const Kept& kept : std::exchange(kept_, {}))
      if (kept.window) new Notice(*kept.window, kept.text);
  }

  QElapsedTimer sinceStart_;
  bool listening_ = false;
  bool connected_ = false;
  std::vector<Kept> kept_;
  int times_ = 0;
};

Speaker& TheSpeaker() {
  static auto& speaker = *new Speaker;  // windows may go after statics
  return speaker;
}

}  // namespace

Notice::Notice(QWidget& window, const QString& text) : QWidget(&window) {
  resize(0, 0);
  setAccessibleName(text);
  show();
  QTimer::singleShot(kNoticeLifetime, this, &QObject::deleteLater);
}

void InstallSpeaker() {
  QAccessible::installActivationObserver(&TheSpeaker());
}

void Say(QWidget& window, const QString& text) {
  TheSpeaker().Say(window, text);
}

bool SomebodyListens() {
  return TheSpeaker().IsHeard();
}

int TimesSaid() {
  return TheSpeaker().Times();
}
