#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QMetaEnum>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <algorithm>
#include <utility>

// The user of Qt's widgets: what they see, click and hear.

/// The widget of this class that shows and matches, nullptr for none.
template <class W, class Matches>
W* Visible(Matches matches) {
  for (QWidget* widget : QApplication::allWidgets())
    if (auto* found = dynamic_cast<W*>(widget); found && found->isVisible() && matches(*found)) return found;
  return nullptr;
}

template <class W>
W* WithText(const char* text) {
  return Visible<W>([&](const W& widget) { return widget.text() == text; });
}

template <class W>
W* Any() {
  return Visible<W>([](const W&) { return true; });
}

inline QPushButton* Button(const char* text) {
  return WithText<QPushButton>(text);
}

inline QRect InWindow(const QWidget* widget) {
  return {widget->mapTo(widget->window(), QPoint()), widget->size()};
}

inline QTableView* List() {
  return Any<QTableView>();
}

inline QPoint InRow(int row) {
  return {60, List()->rowViewportPosition(row) + List()->rowHeight(row) / 2};
}

inline QVariant Cell(int row, int column, int role) {
  return List()->model()->index(row, column).data(role);
}

inline void Click(QWidget* widget, QPoint place = {}) {
  ASSERT_TRUE(widget);
  QTest::mouseClick(widget, Qt::LeftButton, {}, place);
}

/// True for a text that is hardly to be told from what it stands on.
inline bool IsFaint(const QLabel& label) {
  const QImage picture =
      label.window()->grab(InWindow(&label)).toImage().convertToFormat(QImage::Format_RGB32);
  const auto* pixels = reinterpret_cast<const QRgb*>(picture.constBits());
  const auto [least, most] = std::minmax_element(pixels, pixels + picture.width() * picture.height(),
                                                 [](QRgb a, QRgb b) { return qGray(a) < qGray(b); });
  return !label.text().isEmpty() && qGray(*most) - qGray(*least) < 60;
}

/// What assistive technology finds below: names, roles, states, actions. All are where their parents say.
inline QStringList Told(QAccessibleInterface* parent) {
  QStringList told;
  for (int i = 0; i < parent->childCount(); ++i) {
    QAccessibleInterface* child = parent->child(i);
    const QAccessible::State state = child->state();
    if (state.invisible || child->role() == QAccessible::Notification) continue;
    EXPECT_GE(child->parent()->indexOfChild(child), 0);
    QStringList words{child->text(QAccessible::Name),
                      QMetaEnum::fromType<QAccessible::Role>().valueToKey(child->role())};
    words += state.disabled ? "disabled" : state.checked ? "checked" : state.readOnly ? "readOnly" : "-";
    if (auto* action = child->actionInterface()) words += action->actionNames();
    if (child->role() == QAccessible::CheckBox) words.removeAll("Press");  // which only newer Qt gives to one
    told += (words.front().isEmpty() ? QStringList() : QStringList(words.join(' '))) + Told(child);
  }
  return told;
}

/// Hears what is said without the focus.
struct Ear final : QObject {
  QStringList Said;
  bool eventFilter(QObject* object, QEvent* event) override {
    auto* source = event->type() == QEvent::Show ? QAccessible::queryAccessibleInterface(object) : nullptr;
    if (source && source->role() == QAccessible::Notification) Said += source->text(QAccessible::Name);
    return false;
  }
};
