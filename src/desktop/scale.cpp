#include "desktop/scale.h"

#include <QApplication>
#include <QFont>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "runtime/Window.h"

namespace {

constexpr double kUsualHeight = 10 * 96 / 72.0;  // pixels

double heightOf(const QFont& font) {
  if (font.pixelSize() > 0) return font.pixelSize();
  return font.pointSizeF() * QGuiApplication::primaryScreen()->logicalDotsPerInchY() / 72;
}

}  // namespace

double scale() { return std::max(1.0, heightOf(QApplication::font()) / kUsualHeight); }

int scaled(int points) { return static_cast<int>(std::lround(points * scale())); }

int inPoints(int pixels) { return static_cast<int>(std::lround(pixels / scale())); }

QRect placeOf(const Control& control) {
  return placeOf(control, scaled(control.Left() + control.Width()) - scaled(control.Left()));
}

QRect placeOf(const Control& control, int width) {
  const int top = scaled(control.Top()), below = scaled(control.Top() + control.Height());
  return mirrored(control.Owner(), {scaled(control.Left()), top, width, below - top});
}

QRect mirrored(const Window& window, const QRect& place) {
  const QRect whole(0, 0, scaled(window.Width()), scaled(window.Height()));
  return QStyle::visualRect(QGuiApplication::layoutDirection(), whole, place);
}
