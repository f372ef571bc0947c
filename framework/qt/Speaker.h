#pragma once

#include <QString>
#include <QWidget>

// What is said to a person who cannot see it happen.

/// Nothing to be seen. It says its name as it comes up, which is an event that screen readers do not drop.
class Notice final : public QWidget {
 public:
  Notice(QWidget& window, const QString& text);
};

/// Hears from then on whether somebody listens.
void InstallSpeaker();

/// Says something that happens without the focus, once, also if it is over before it can be said. What is
/// said at the start is kept until a screen reader listens. `window` must stay for some seconds.
void Say(QWidget& window, const QString& text);
/// Whether somebody listens; callers that must search for words ask first.
bool SomebodyListens();
/// How often something has been said.
int TimesSaid();
