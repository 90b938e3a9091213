#include "desktop/Content.h"

#include <QPainter>

#include "desktop/colors.h"
#include "desktop/scale.h"

void Content::paintEvent(QPaintEvent*) {
  if (!record_) return;
  QPainter painter(this);
  for (const Control* control : record_->Controls()) {
    if (control->Kind() == ControlKind::Line && control->Visible())
      drawLine(painter, static_cast<const Line&>(*control));
  }
}

// A horizontal or vertical line is filled, not stroked, which is as sharp as the screen allows.
void Content::drawLine(QPainter& painter, const Line& line) const {
  const QColor wanted = line.Appearance().color ? QColor::fromRgb(*line.Appearance().color)
                                                : palette().color(QPalette::WindowText);
  const QColor color = legibleOn(palette().color(QPalette::Window), wanted);
  const QPoint from(scaled(line.X1()), scaled(line.Y1())), to(scaled(line.X2()), scaled(line.Y2()));
  if (from.x() != to.x() && from.y() != to.y()) {
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    const auto shown = [&](QPoint point) {
      return QPoint(rightToLeft ? width() - 1 - point.x() : point.x(), point.y());
    };
    painter.setPen(color);
    painter.drawLine(shown(from), shown(to));
  } else {
    const int more = scaled(1) - 1;
    const QRect filled = QRect(from, to).normalized().adjusted(0, 0, more, more);
    painter.fillRect(mirrored(*record_, filled), color);
  }
}
