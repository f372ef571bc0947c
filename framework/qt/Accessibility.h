#pragma once

#include <QAccessible>
#include <QString>

class QTableView;
class QWidget;

/// Tells assistive technology what our own widgets are: windows, wheels, pictures, links.
void InstallAccessibility();

/// Says something that happens without the focus: once, also if that is over before it can be said, and
/// at the start as soon as somebody listens. `window` must stay for some seconds.
void Say(QWidget& window, const QString& text);
/// True where that would be heard. Words that take work to find are looked for only then.
bool SomebodyHears();
/// How often something has been said.
int TimesSaid();

/// Names a widget. A name that it has is not told again.
void SetAccessibleName(QWidget& widget, const QString& name);

/// Tells that a widget has the focus again, where Qt does not.
void AnnounceFocus(QWidget& widget);

/// Tells of an event in a row of a list, which the row's first cell stands for.
void AnnounceRow(QTableView& list, int row, QAccessible::Event what);
