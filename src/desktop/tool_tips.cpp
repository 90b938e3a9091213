#include "desktop/tool_tips.h"

#include <QHelpEvent>
#include <QToolTip>
#include <QVariant>
#include <QWidget>

#include "desktop/shown_text.h"

namespace {

constexpr char kTip[] = "tip";

class Tips : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::ToolTip) return QObject::eventFilter(watched, event);
    auto& widget = *static_cast<QWidget*>(watched);
    const QString tip = tipOf(widget);
    if (tip.isEmpty()) return false;
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(tip), &widget);
    return true;
  }
};

}  // namespace

void setTip(QWidget& widget, const QString& shown) {
  const QVariant before = widget.property(kTip);
  if (!before.isValid() && shown.isEmpty()) return;
  if (!before.isValid()) widget.installEventFilter(new Tips(&widget));
  widget.setProperty(kTip, shown);
}

QString tipOf(const QWidget& widget) { return widget.property(kTip).toString(); }
