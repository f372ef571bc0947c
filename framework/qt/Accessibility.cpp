#include "framework/qt/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QTableView>
#include <utility>

#include "framework/qt/CanvasView.h"
#include "framework/qt/LabelView.h"
#include "framework/qt/Speaker.h"
#include "framework/qt/TabPanelView.h"
#include "framework/qt/WheelView.h"
#include "framework/qt/WindowView.h"

namespace {

/// A window. One that takes no focus waits for no answer, as a dialogue does, and is called by what it says,
/// which its title need not tell.
class AccessibleWindow final : public QAccessibleWidget {
 public:
  explicit AccessibleWindow(WindowView& window) : QAccessibleWidget(&window), window_(window) {}

  QAccessible::Role role() const override {
    return window_.windowFlags().testFlag(Qt::Dialog) && !Passive() ? QAccessible::Dialog
                                                                    : QAccessible::Window;
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name && Passive() ? window_.LabelTexts() : QAccessibleWidget::text(kind);
  }

 private:
  bool Passive() const { return window_.testAttribute(Qt::WA_ShowWithoutActivating); }

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
    return kind == QAccessible::Name ? label_.WholeText() : QAccessibleWidget::text(kind);
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
  /// A hint is read with the control that it belongs to. Without a relation it would be read with the page
  /// too.
  QVector<std::pair<QAccessibleInterface*, QAccessible::Relation>> relations(
      QAccessible::Relation match) const override {
    auto related = QAccessibleWidget::relations(match);
    if (!match.testFlag(QAccessible::Controlled) || label_.WholeText().isEmpty()) return related;
    for (const QObject* sibling : label_.parent()->children())
      if (const auto* widget = qobject_cast<const QWidget*>(sibling);
          widget && widget->accessibleDescription() == label_.WholeText())
        related.emplace_back(QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget)),
                             QAccessible::Controlled);
    return related;
  }

 private:
  LabelView& label_;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  if (auto* window = dynamic_cast<WindowView*>(object)) return new AccessibleWindow(*window);
  if (auto* notice = dynamic_cast<Notice*>(object))
    return new QAccessibleWidget(notice, QAccessible::Notification);
  if (auto* page = dynamic_cast<TabPage*>(object)) return new QAccessibleWidget(page, QAccessible::Grouping);
  if (auto* wheel = dynamic_cast<WheelView*>(object)) return new AccessibleWheel(*wheel);
  if (auto* canvas = dynamic_cast<CanvasView*>(object))
    return new QAccessibleWidget(canvas, QAccessible::Graphic);
  if (auto* label = dynamic_cast<LabelView*>(object)) return new AccessibleLabel(*label);
  // A table asks only cells, headings and panes for their place in it, and complains about its scroll bars.
  if (object->isWidgetType() && dynamic_cast<QTableView*>(object->parent()))
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Pane);
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeInterface);
  InstallSpeaker();
}

void SetAccessibleName(QWidget& widget, const QString& name) {
  if (widget.accessibleName() != name) widget.setAccessibleName(name);
}

void AnnounceFocus(QWidget& widget) {
  QAccessibleEvent event(&widget, QAccessible::Focus);
  QAccessible::updateAccessibility(&event);
}

void AnnounceRow(QTableView& list, int row, QAccessible::Event what) {
  if (!QAccessible::isActive()) return;
  QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&list);
  QAccessibleInterface* cell = table ? table->tableInterface()->cellAt(row, 0) : nullptr;
  if (!cell) return;
  QAccessibleEvent event(cell, what);
  QAccessible::updateAccessibility(&event);
}
