#include "desktop/fitting.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QWidget>
#include <algorithm>

#include "desktop/scale.h"
#include "runtime/Window.h"

namespace {

constexpr int kUsualBody = 13;  // points; texts without a size of their own were laid out for it
constexpr int kGap = 4;         // points between two texts
constexpr int kUnstretched = 100, kNarrowest = 92;  // per cent of a letter's width

int bodySize() { return QFontInfo(QApplication::font()).pixelSize(); }

}  // namespace

QFont fontOf(const Look& look) {
  QFont font = QApplication::font();
  const int least = look.fontSize > kUsualBody ? bodySize() + 1 : 1;
  if (look.fontSize > 0) font.setPixelSize(std::max(scaled(look.fontSize), least));
  if (look.italic) font.setItalic(true);
  return font;
}

QFont fittingFont(const Look& look, const std::function<bool(const QFont&)>& fits) {
  QFont font = fontOf(look);
  if (fits(font)) return font;
  const int whole = QFontInfo(font).pixelSize(), body = bodySize();
  const int least = whole > body ? body + 1 : whole * 4 / 5;
  for (int size = whole - 1; size >= least && !fits(font); --size) font.setPixelSize(size);
  for (int share = kUnstretched - 2; share >= kNarrowest && !fits(font); share -= 2) font.setStretch(share);
  return font;
}

int neededWidth(const QFont& font, const QString& text) {
  return QFontMetrics(font).horizontalAdvance(text) + 2;
}

int freeWidth(const Control& control) {
  int right = control.Owner().Width();
  for (const Control* other : control.Owner().Controls()) {
    const bool beside = other->Top() < control.Top() + control.Height() &&
                        control.Top() < other->Top() + other->Height() && other->Left() > control.Left();
    if (beside && other->Visible() && other->Kind() != ControlKind::Line)
      right = std::min(right, other->Left());
  }
  return scaled(right - kGap - control.Left());
}

void takeFont(QWidget& widget, const QFont& font) {
  if (widget.font() != font) widget.setFont(font);
}
