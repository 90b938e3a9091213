#include "desktop/box_marks.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

#include "desktop/colors.h"

namespace {

// Where to draw the frame; nothing where the desktop has a style of its own. With the focus, the style's
// frame shows it, in a colour that stands out.
QRectF frameOf(const QAbstractButton& box, QStyle::SubElement mark) {
  if (box.style()->name() != u"fusion" || !box.isEnabled() || box.hasFocus()) return {};
  QStyleOptionButton option;
  option.initFrom(&box);
  return QRectF(box.style()->subElementRect(mark, &option, &box)).adjusted(0.5, 0.5, -0.5, -0.5);
}

void takeFramePen(QPainter& painter, const QWidget& box) {
  const QPalette& palette = box.palette();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(mutedOn(palette.color(QPalette::Window), palette.color(QPalette::WindowText), kDiscernible));
}

}  // namespace

void MarkedCheckBox::paintEvent(QPaintEvent* event) {
  QCheckBox::paintEvent(event);
  const QRectF frame = frameOf(*this, QStyle::SE_CheckBoxIndicator);
  if (frame.isEmpty()) return;
  QPainter painter(this);
  takeFramePen(painter, *this);
  painter.drawRect(frame);
}

void MarkedRadioButton::paintEvent(QPaintEvent* event) {
  QRadioButton::paintEvent(event);
  const QRectF frame = frameOf(*this, QStyle::SE_RadioButtonIndicator);
  if (frame.isEmpty()) return;
  QPainter painter(this);
  takeFramePen(painter, *this);
  painter.drawEllipse(frame);
}
