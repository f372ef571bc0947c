#pragma once

#include <QAccessible>
#include <QString>

class QTableView;
class QWidget;

/// Tells assistive technology what our own widgets are: windows, wheels, pictures, links.
void InstallAccessibility();

/// Names a widget. A name that it has is not told again.
void SetAccessibleName(QWidget& widget, const QString& name);

/// Tells that a widget has the focus again, where Qt does not.
void AnnounceFocus(QWidget& widget);

/// Tells of an event in a row of a list, which the row's first cell stands for.
void AnnounceRow(QTableView& list, int row, QAccessible::Event what);
