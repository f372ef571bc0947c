#include "framework/qt/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "framework/qt/CanvasView.h"
#include "framework/qt/LabelView.h"
#include "framework/qt/WheelView.h"

namespace {

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

/// A label that can be pressed.
class AccessibleLink final : public QAccessibleWidget {
 public:
  explicit AccessibleLink(LabelView& label) : QAccessibleWidget(&label, QAccessible::Link), label_(label) {}

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? label_.text() : QAccessibleWidget::text(kind);
  }
  QStringList actionNames() const override {
    return QAccessibleWidget::actionNames() << QAccessibleActionInterface::pressAction();
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
  if (auto* wheel = dynamic_cast<WheelView*>(object)) return new AccessibleWheel(*wheel);
  if (auto* canvas = dynamic_cast<CanvasView*>(object))
    return new QAccessibleWidget(canvas, QAccessible::Graphic);
  if (auto* label = dynamic_cast<LabelView*>(object); label && label->IsLink())
    return new AccessibleLink(*label);
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeInterface);
}
