#include "framework/qt/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QTableView>

#include "framework/qt/CanvasView.h"
#include "framework/qt/LabelView.h"
#include "framework/qt/TabPanelView.h"
#include "framework/qt/WheelView.h"
#include "framework/qt/WindowView.h"

namespace {

/// A window. One that takes no focus tells what goes on, and is read when it comes up.
class AccessibleWindow final : public QAccessibleWidget {
 public:
  explicit AccessibleWindow(WindowView& window) : QAccessibleWidget(&window), window_(window) {}

  QAccessible::Role role() const override {
    if (!window_.windowFlags().testFlag(Qt::Dialog)) return QAccessible::Window;
    return window_.testAttribute(Qt::WA_ShowWithoutActivating) ? QAccessible::Notification
                                                               : QAccessible::Dialog;
  }

 private:
  WindowView& window_;
};

/// Something that turns while work goes on.
class AccessibleWheel final : public QAccessibleWidget {
 public:
  explicit AccessibleWheel(WheelView& wheel) : QAccessibleWidget(&wheel, QAccessible::Animation) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.busy = true;
    return state;
  }
};

/// A label, which can be pressed where it is a link.
class AccessibleLabel final : public QAccessibleWidget {
 public:
  explicit AccessibleLabel(LabelView& label) : QAccessibleWidget(&label), label_(label) {}

  QAccessible::Role role() const override {
    return label_.IsLink() ? QAccessible::Link : QAccessible::StaticText;
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? label_.Whole() : QAccessibleWidget::text(kind);
  }
  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (label_.IsLink()) names << QAccessibleActionInterface::pressAction();
    return names;
  }
  void doAction(const QString& name) override {
    if (name == QAccessibleActionInterface::pressAction())
      label_.Press();
    else
      QAccessibleWidget::doAction(name);
  }

 private:
  LabelView& label_;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  if (auto* window = dynamic_cast<WindowView*>(object)) return new AccessibleWindow(*window);
  if (auto* page = dynamic_cast<TabPage*>(object)) return new QAccessibleWidget(page, QAccessible::Grouping);
  if (auto* wheel = dynamic_cast<WheelView*>(object)) return new AccessibleWheel(*wheel);
  if (auto* canvas = dynamic_cast<CanvasView*>(object))
    return new QAccessibleWidget(canvas, QAccessible::Graphic);
  if (auto* label = dynamic_cast<LabelView*>(object)) return new AccessibleLabel(*label);
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeInterface);
}

void SetAccessibleName(QWidget& widget, const QString& name) {
  if (widget.accessibleName() != name) widget.setAccessibleName(name);
}

void TellOfRow(QTableView& list, int row, QAccessible::Event what) {
  if (!QAccessible::isActive()) return;
  QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&list);
  QAccessibleInterface* cell = table ? table->tableInterface()->cellAt(row, 0) : nullptr;
  if (!cell) return;
  QAccessibleEvent event(cell, what);
  QAccessible::updateAccessibility(&event);
}
