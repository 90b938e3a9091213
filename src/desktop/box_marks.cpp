#include "desktop/box_marks.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

#include "desktop/colors.h"

namespace {

// The frame to draw; empty if the desktop has a style of its own, or if the style itself draws a frame in a
// colour that stands out, as it does around a box with the focus.
QRectF frameOf(const QAbstractButton& box, QStyle::SubElement mark) {
  if (box.style()->name() != u"fusion" || !box.isEnabled() || box.hasFocus()) return {};
  QStyleOptionButton option;
  option.initFrom(&box);
  return QRectF(box.style()->subElementRect(mark, &option, &box)).adjusted(0.5, 0.5, -0.5, -0.5);
}

void drawFrame(QAbstractButton& box, QStyle::SubElement mark, void (QPainter::*draw)(const QRectF&)) {
  const QRectF frame = frameOf(box, mark);
  if (frame.isEmpty()) return;
  const QPalette& palette = box.palette();
  QPainter painter(&box);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(mutedOn(palette.color(QPalette::Window), palette.color(QPalette::WindowText), kDiscernible));
  (painter.*draw)(frame);
}

}  // namespace

void drawFrame(QCheckBox& box) { drawFrame(box, QStyle::SE_CheckBoxIndicator, &QPainter::drawRect); }

void drawFrame(QRadioButton& button) {
  drawFrame(button, QStyle::SE_RadioButtonIndicator, &QPainter::drawEllipse);
}
