#include "desktop/Content.h"

#include <QPainter>

#include "desktop/colors.h"

void Content::paintEvent(QPaintEvent*) {
  if (!record_) return;
  QPainter painter(this);
  for (const Control* control : record_->Controls()) {
    if (control->Kind() == ControlKind::Line && control->Visible())
      drawLine(painter, static_cast<const Line&>(*control));
  }
}

// Filled, not stroked: a level or upright line is then as sharp as the screen can draw it.
void Content::drawLine(QPainter& painter, const Line& line) const {
  const QColor told =
      line.LookOf().color ? QColor::fromRgb(*line.LookOf().color) : palette().color(QPalette::WindowText);
  const QColor color = legibleOn(palette().color(QPalette::Window), told);
  const QPoint from(line.X1(), line.Y1()), to(line.X2(), line.Y2());
  if (from.x() != to.x() && from.y() != to.y()) {
    painter.setPen(color);
    painter.drawLine(from, to);
  } else {
    painter.fillRect(QRect(from, to).normalized(), color);
  }
}
