// Buttons, boxes and canvases: what a user clicks on.

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <algorithm>

#include "desktop/BusyPushButton.h"
#include "desktop/box_marks.h"
#include "desktop/control_views.h"
#include "desktop/fitting.h"
#include "desktop/pictures.h"
#include "desktop/scale.h"
#include "desktop/shown_text.h"
#include "desktop/tool_tips.h"

namespace {

constexpr int kButtonMargin = 10;  // pixels to the left and right of a caption, together

// In pixels: the button's own mark and margins take `taken`, and all of it may take at most `widest`.
void showCaption(QAbstractButton& button, const Button& record, int taken, int widest) {
  const QString caption = shownText(record.Caption());
  const QFont font = fittingFont(
      record.Appearance(), [&](const QFont& tried) { return neededWidth(tried, caption) <= widest - taken; });
  takeFont(button, font);
  const int wanted = neededWidth(font, caption) + taken;
  button.setGeometry(placeOf(record, std::clamp(wanted, std::min(button.width(), widest), widest)));
  const QString fitting =
      QFontMetrics(font).elidedText(caption, Qt::ElideRight, button.width() - taken, Qt::TextShowMnemonic);
  button.setText(fitting);
  setTip(button, fitting == caption ? QString() : caption);
  button.setAccessibleName(caption);
}

// The record toggles by itself; the update after `changed` shows its state, whatever the widget did first.
void reportClicks(QAbstractButton& button, Button& record, const Changed& changed) {
  QObject::connect(&button, &QAbstractButton::clicked, &button, [&record] { record.UserClicks(); });
  QObject::connect(&button, &QAbstractButton::clicked, &button, changed);
  QObject::connect(&button, &QAbstractButton::toggled, &button, changed);
}

// A screen reader may toggle a box without a click. The check is queued, so that a click's own handlers run
// first: if the record disagrees even then, there was no click, and the toggle is reported as one. But an
// exclusive button is unchecked only because another is checked.
template <typename Box, typename Record>
void reportToggles(Box& box, Record& record, bool exclusive) {
  const auto check = [&box, &record, exclusive] {
    if (box.signalsBlocked() || box.isChecked() == record.Value()) return;
    if (box.isChecked() || !exclusive) record.UserClicks();
  };
  QObject::connect(&box, &QAbstractButton::toggled, &box, check, Qt::QueuedConnection);
}

// width and spacing are those of the mark. The record may uncheck the only checked button, which an exclusive
// group of widgets forbids.
template <typename Box, typename Record>
ControlView boxView(Record& record, QWidget& content, const Changed& changed, QStyle::PixelMetric width,
                    QStyle::PixelMetric spacing) {
  auto* box = new Marked<Box>(&content);
  const bool exclusive = box->autoExclusive();
  reportClicks(*box, record, changed);
  reportToggles(*box, record, exclusive);
  const auto update = [box, &record, exclusive, width, spacing] {
    const int taken = box->style()->pixelMetric(width) + box->style()->pixelMetric(spacing);
    showCaption(*box, record, taken, freeWidth(record));
    const QSignalBlocker quiet(box);
    box->setAutoExclusive(false);
    box->setChecked(record.Value());
    box->setAutoExclusive(exclusive);
  };
  return {box, update};
}

// A picture, on a QLabel if it only shows, or on a button.
template <typename Base>
class CanvasView : public Base {
 public:
  CanvasView(Canvas& record, QWidget& content) : Base(&content), record_(record), file_(record.Backdrop()) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    drawPicture(painter, this->rect(), file_);
    if (!this->hasFocus()) return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    this->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
  Canvas& record_;

 private:
  const std::string file_;
};

class CanvasButton : public CanvasView<QAbstractButton> {
 public:
  CanvasButton(Canvas& record, QWidget& content) : CanvasView(record, content) {
    setFocusPolicy(Qt::TabFocus);
    // Only an accessible action clicks it: the events below don't.
    connect(this, &QAbstractButton::clicked, this, [this] { record_.UserClicks(); });
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton)
      record_.UserClicksAt(inPoints(event->pos().x()), inPoints(event->pos().y()));
  }
  void mouseReleaseEvent(QMouseEvent*) override {}
  void keyPressEvent(QKeyEvent* event) override {
    const bool presses =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    presses ? static_cast<void>(record_.UserClicks()) : QAbstractButton::keyPressEvent(event);
  }
};

}  // namespace

ControlView pushButtonView(Button& record, QWidget& content, const Changed& changed) {
  auto* button = new BusyPushButton(&content);
  button->setAutoDefault(true);
  reportClicks(*button, record, changed);
  ControlView view{button,
                   [button, &record] { showCaption(*button, record, kButtonMargin, button->width()); }};
  if (record.Appearance().startsCommand) view.busy = [button](bool busy) { button->setBusy(busy); };
  return view;
}

ControlView checkBoxView(CheckBox& record, QWidget& content, const Changed& changed) {
  return boxView<QCheckBox>(record, content, changed, QStyle::PM_IndicatorWidth,
                            QStyle::PM_CheckBoxLabelSpacing);
}

ControlView radioButtonView(RadioButton& record, QWidget& content, const Changed& changed) {
  return boxView<QRadioButton>(record, content, changed, QStyle::PM_ExclusiveIndicatorWidth,
                               QStyle::PM_RadioButtonLabelSpacing);
}

ControlView canvasView(Canvas& record, QWidget& content) {
  QWidget* const view = record.MouseDown ? static_cast<QWidget*>(new CanvasButton(record, content))
                                         : new CanvasView<QLabel>(record, content);
  return {view, [view] { view->update(); }};
}
