// Buttons, boxes and canvases: what a person clicks on.

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

constexpr int kButtonMargin = 10;  // what a style keeps free around a caption, on both sides together

// taken is what the button's own marks and margins need of widest, in pixels.
void showCaption(QAbstractButton& button, const Button& record, int taken, int widest) {
  const QString caption = shownText(record.Caption());
  const QFont font = fittingFont(
      record.LookOf(), [&](const QFont& tried) { return neededWidth(tried, caption) <= widest - taken; });
  takeFont(button, font);
  const int wanted = neededWidth(font, caption) + taken;
  button.setGeometry(placeOf(record, std::clamp(wanted, std::min(button.width(), widest), widest)));
  const QString fitting =
      QFontMetrics(font).elidedText(caption, Qt::ElideRight, button.width() - taken, Qt::TextShowMnemonic);
  button.setText(fitting);
  setTip(button, fitting == caption ? QString() : caption);
  button.setAccessibleName(caption);
}

// The record toggles by itself; what the widget did first is undone or confirmed by the update
// that follows every deed.
void reportClicks(QAbstractButton& button, Button& record) {
  QObject::connect(&button, &QAbstractButton::clicked, &button, [&record] { record.PersonClicks(); });
}

// A screen reader may toggle a box without a click. What counts is whether the record disagrees once all that
// comes with a click is over: then it was no click, and acts as one.
template <typename Box>
void reportToggles(QAbstractButton& button, Box& record, bool (*disagrees)(bool shown, bool held)) {
  const auto check = [&button, &record, disagrees] {
    if (!button.signalsBlocked() && disagrees(button.isChecked(), record.Value())) record.PersonClicks();
  };
  QObject::connect(&button, &QAbstractButton::toggled, &button, check, Qt::QueuedConnection);
}

int takenByIndicator(const QWidget& widget, QStyle::PixelMetric width, QStyle::PixelMetric spacing) {
  return widget.style()->pixelMetric(width) + widget.style()->pixelMetric(spacing);
}

// A canvas that takes clicks is a button with a picture on it.
class CanvasButton : public QAbstractButton {
 public:
  CanvasButton(Canvas& record, QWidget& content) : QAbstractButton(&content), record_(record) {
    setFocusPolicy(Qt::TabFocus);
    connect(this, &QAbstractButton::clicked, this,
            [this] { record_.PersonClicks(); });  // by an accessible action
  }
  void showBackdrop() {
    file_ = record_.Backdrop();
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    drawPicture(painter, rect(), file_);
    if (!hasFocus()) return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton)
      record_.PersonClicksAt(inPoints(event->pos().x()), inPoints(event->pos().y()));
  }
  void mouseReleaseEvent(QMouseEvent*) override {}
  void keyPressEvent(QKeyEvent* event) override {
    const bool presses =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    presses ? static_cast<void>(record_.PersonClicks()) : QAbstractButton::keyPressEvent(event);
  }

 private:
  Canvas& record_;
  std::string file_;
};

// One that takes none is an image.
class CanvasImage : public QLabel {
 public:
  CanvasImage(Canvas& record, QWidget& content) : QLabel(&content), record_(record) {}
  void showBackdrop() {
    file_ = record_.Backdrop();
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    drawPicture(painter, rect(), file_);
  }

 private:
  Canvas& record_;
  std::string file_;
};

}  // namespace

ControlView pushButtonView(Button& record, QWidget& content) {
  auto* button = new BusyPushButton(&content);
  button->setAutoDefault(true);
  reportClicks(*button, record);
  ControlView view{
      button, [button, &record] { showCaption(*button, record, kButtonMargin, button->width()); }, {}, {}};
  if (record.LookOf().startsCommand) view.busy = [button](bool busy) { button->setBusy(busy); };
  return view;
}

ControlView checkBoxView(CheckBox& record, QWidget& content) {
  auto* box = new MarkedCheckBox(&content);
  reportClicks(*box, record);
  reportToggles(*box, record, [](bool shown, bool held) { return shown != held; });
  const auto update = [box, &record] {
    showCaption(*box, record,
                takenByIndicator(*box, QStyle::PM_IndicatorWidth, QStyle::PM_CheckBoxLabelSpacing),
                freeWidth(record));
    const QSignalBlocker quiet(box);
    box->setChecked(record.Value());
  };
  return {box, update, {}, {}};
}

// The widget's own group would not let the last checked button go off, which the record may do.
ControlView radioButtonView(RadioButton& record, QWidget& content) {
  auto* button = new MarkedRadioButton(&content);
  reportClicks(*button, record);
  // One that goes off does so because another goes on.
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
  return {button, update, {}, {}};
}

ControlView canvasView(Canvas& record, QWidget& content) {
  if (!record.MouseDown) {
    auto* image = new CanvasImage(record, content);
    return {image, [image] { image->showBackdrop(); }, {}, {}};
  }
  auto* button = new CanvasButton(record, content);
  return {button, [button] { button->showBackdrop(); }, {}, {}};
}
