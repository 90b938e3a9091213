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
// first: if the record disagrees even then, there was no click, and the toggle is reported as one.
template <typename Box>
void reportToggles(QAbstractButton& button, Box& record, bool (*disagrees)(bool shown, bool held)) {
  const auto check = [&button, &record, disagrees] {
    if (!button.signalsBlocked() && disagrees(button.isChecked(), record.Value())) record.UserClicks();
  };
  QObject::connect(&button, &QAbstractButton::toggled, &button, check, Qt::QueuedConnection);
}

int takenByIndicator(const QWidget& widget, QStyle::PixelMetric width, QStyle::PixelMetric spacing) {
  return widget.style()->pixelMetric(width) + widget.style()->pixelMetric(spacing);
}

// A picture, on a QLabel if it only shows, or on a button.
template <typename Base>
class CanvasView : public Base {
 public:
  CanvasView(Canvas& record, QWidget& content) : Base(&content), record_(record) {}
  void showBackdrop() {
    file_ = record_.Backdrop();
    this->update();
  }

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
  std::string file_;
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

template <typename View>
ControlView viewOfCanvas(Canvas& record, QWidget& content) {
  auto* view = new View(record, content);
  return {view, [view] { view->showBackdrop(); }};
}

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
  auto* box = new MarkedCheckBox(&content);
  reportClicks(*box, record, changed);
  reportToggles(*box, record, [](bool shown, bool held) { return shown != held; });
  const auto update = [box, &record] {
    showCaption(*box, record,
                takenByIndicator(*box, QStyle::PM_IndicatorWidth, QStyle::PM_CheckBoxLabelSpacing),
                freeWidth(record));
    const QSignalBlocker quiet(box);
    box->setChecked(record.Value());
  };
  return {box, update};
}

// The record may uncheck the only checked button, which the widget's own exclusive group forbids.
ControlView radioButtonView(RadioButton& record, QWidget& content, const Changed& changed) {
  auto* button = new MarkedRadioButton(&content);
  reportClicks(*button, record, changed);
  // A button is unchecked only because another is checked.
  reportToggles(*button, record, [](bool shown, bool held) { return shown && !held; });
  const auto update = [button, &record] {
    showCaption(
        *button, record,
        takenByIndicator(*button, QStyle::PM_ExclusiveIndicatorWidth, QStyle::PM_RadioButtonLabelSpacing),
        freeWidth(record));
    const QSignalBlocker quiet(button);
    button->setAutoExclusive(false);
    button->setChecked(record.Value());
    button->setAutoExclusive(true);
  };
  return {button, update};
}

ControlView canvasView(Canvas& record, QWidget& content) {
  return record.MouseDown ? viewOfCanvas<CanvasButton>(record, content)
                          : viewOfCanvas<CanvasView<QLabel>>(record, content);
}
