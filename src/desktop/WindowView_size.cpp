// The size of a window and the places of its parts, at the scale of the desktop's font.

#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>

#include "desktop/WindowView.h"
#include "desktop/scale.h"

namespace {

constexpr int kStatusHeight = 18;  // points

// The largest size inside its frame that a window can have on its screen.
QSize availableTo(const QWidget& window) {
  constexpr int kBorders = 8;
  const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
  return window.screen()->availableGeometry().size() - QSize(kBorders, title + kBorders);
}

// The left edge of the labels, with which the status line is flush.
int leftmostOf(const Window& record) {
  int left = record.Width();
  for (const Control* control : record.Controls()) {
    if (control->Kind() == ControlKind::Label) left = std::min(left, control->Left());
  }
  return scaled(left);
}

bool startsCommands(const Window& record) {
  return std::ranges::any_of(record.Controls(), [](auto* c) { return c->Appearance().startsCommand; });
}

}  // namespace

int WindowView::menuHeight(int width) const {
  return bar_ && !bar_->isNativeMenuBar() ? bar_->heightForWidth(width) : 0;
}

void WindowView::scroll() {
  if (scroller_) return;
  const bool isFilled = !content_->isHidden();
  QWidget* const focused = focusWidget();
  scroller_ = new QScrollArea(this);
  scroller_->setFrameShape(QFrame::NoFrame);
  scroller_->setFocusPolicy(Qt::NoFocus);
  scroller_->setWidget(content_);
  content_->setVisible(isFilled);
  scroller_->show();
  if (isFilled && focused) focused->setFocus();
}

// What scroll bars add to the size, if they are needed to show all of whole.
QSize WindowView::scrollBarsFor(const QSize& whole, const QSize& available) const {
  const int bar = scroller_ ? scroller_->verticalScrollBar()->sizeHint().width() : 0;
  return {whole.height() > available.height() ? bar : 0, whole.width() > available.width() ? bar : 0};
}

// The record's size, scaled. A window whose first size is too large for the screen gets scroll bars.
void WindowView::takeSize() {
  status_.updateFont();
  const WindowFrame& frame = record_->Frame();
  const QSize available = availableTo(*this), menu(0, menuHeight(scaled(frame.width)));
  const auto sized = [&](int width, int height) { return QSize(scaled(width), scaled(height)) + menu; };
  const QSize least = sized(frame.width, frame.height), whole = sized(record_->Width(), record_->Height());
  if (least != least.boundedTo(available)) scroll();
  const QSize shown = (whole + scrollBarsFor(least, available)).boundedTo(available);
  setMinimumSize(sized(frame.minWidth, frame.minHeight).boundedTo(available));
  setMaximumSize(sized(frame.maxWidth, frame.maxHeight));
  if (!frame.resizable) setFixedSize(shown);
  if (frame.resizable && !isMaximized() && !isFullScreen()) resize(shown);
  drawnScale_ = scale();
}

void WindowView::layOut() {
  const int above = menuHeight(width());
  if (bar_) bar_->setGeometry(0, 0, width(), above);
  const int high = scaled(kStatusHeight);
  QRect ground(0, above, width(), height() - above);
  if (scroller_) {
    if (startsCommands(*record_)) ground.setHeight(ground.height() - high);  // the status stays in sight
    scroller_->setGeometry(ground);
    const QSize least(scaled(record_->Frame().width), scaled(record_->Frame().height));
    content_->resize(least.expandedTo(ground.size() - scrollBarsFor(least, ground.size())));
  } else {
    content_->setGeometry(ground);
  }
  const int margin = leftmostOf(*record_);
  status_.place({margin, height() - high, width() - 2 * margin, high});
  // A new size may bring a text area into sight; mirrored places are counted from the right edge.
  const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
  for (const Entry& entry : entries_) {
    if (rightToLeft || entry.record->Kind() == ControlKind::TextArea) markDirty(*entry.record);
  }
}
