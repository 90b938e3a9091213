// Labels, text fields and text areas.

#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QUrl>
#include <limits>

#include "desktop/colors.h"
#include "desktop/control_views.h"
#include "desktop/shown_text.h"

namespace {

constexpr qsizetype kLongestLabel = 10'000;
constexpr qsizetype kLongestArea = 100'000;
constexpr qsizetype kLongestLine = 1'000;

void takeColor(QWidget& widget, const Look& look) {
  if (!look.color) return;
  QPalette palette = widget.palette();
  const QColor shown = legibleOn(palette.color(QPalette::Window), QColor::fromRgb(*look.color));
  if (palette.color(QPalette::WindowText) == shown) return;
  palette.setColor(QPalette::WindowText, shown);
  widget.setPalette(palette);
}

// A text that doesn't fit is cut with "…", or, where it has several lines, at the label's edge;
// the tool tip has the whole.
void showLabel(QLabel& label, const Label& record) {
  const bool multiline = record.LookOf().multiline;
  const QString full = shownText(record.Text(), multiline ? Lines::Many : Lines::One, kLongestLabel);
  const QString shown =
      multiline ? withBreaks(full) : label.fontMetrics().elidedText(full, Qt::ElideRight, record.Width());
  if (label.text() != shown) label.setText(shown);
  const bool fits = multiline ? label.heightForWidth(record.Width()) <= record.Height() : shown == full;
  label.setToolTip(fits ? QString() : plainToolTip(full));
  label.setAccessibleName(full);
  takeColor(label, record.LookOf());
}

// A link that is dropped takes the place of what stood there; text moved inside the field is the
// field's own affair.
class DropLineEdit : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override {
    takes(*event) ? acceptCopy(*event) : QLineEdit::dragEnterEvent(event);
  }
  void dragMoveEvent(QDragMoveEvent* event) override {
    takes(*event) ? acceptCopy(*event) : QLineEdit::dragMoveEvent(event);
  }
  void dropEvent(QDropEvent* event) override {
    if (!takes(*event)) return QLineEdit::dropEvent(event);
    const QMimeData& dropped = *event->mimeData();
    selectAll();
    insert(dropped.hasUrls() ? QString::fromUtf8(dropped.urls().constFirst().toEncoded())
                             : dropped.text().trimmed());
    setFocus(Qt::OtherFocusReason);
    acceptCopy(*event);
  }

 private:
  bool takes(const QDropEvent& event) const {
    const QMimeData& dragged = *event.mimeData();
    const bool holds = dragged.hasUrls() ? !dragged.urls().isEmpty() : dragged.hasText();
    return holds && event.source() != this && !isReadOnly();
  }
  static void acceptCopy(QDropEvent& event) {
    event.setDropAction(Qt::CopyAction);
    event.accept();
  }
};

// A change by code leaves the cursor where it was if it can.
void showField(QLineEdit& field, const TextField& record) {
  const QString text = QString::fromStdString(record.Text());
  if (field.text() == text) return;
  const QSignalBlocker quiet(&field);
  const int cursor = field.cursorPosition();
  field.setText(text);
  field.setCursorPosition(cursor);
}

bool isInSight(const QWidget& widget, const Control& record) {
  const QRect place(record.Left(), record.Top(), record.Width(), record.Height());
  return record.Visible() && widget.parentWidget()->rect().intersects(place);
}

// Documents come in one line, and the time to lay out a line grows faster than its length. So a long
// one is shown as several, parted at blanks where there are any.
QString inLines(QString text) {
  qsizetype start = 0;
  qsizetype blank = -1;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == QChar(u' ')) blank = i;
    if (text[i] != QChar(u'\n') && i - start < kLongestLine) continue;
    if (text[i] != QChar(u'\n')) {
      if (blank <= start) text.insert(i, QChar(u'\n')), blank = i;
      text[blank] = QChar(u'\n');
      i = blank;
    }
    start = i + 1;
  }
  return text;
}

// The buffer may hold a document of any size, and changes many times while nobody looks.
void showArea(QPlainTextEdit& area, const TextArea& record) {
  const bool inSight = isInSight(area, record);
  area.setFocusPolicy(inSight ? Qt::StrongFocus : Qt::NoFocus);
  const QString text = inSight ? inLines(shownText(record.Text(), Lines::Many, kLongestArea)) : QString();
  if (area.toPlainText() != text) area.setPlainText(text);
}

}  // namespace

ControlView labelView(Label& record, QWidget& content) {
  auto* label = new QLabel(&content);
  const Look& look = record.LookOf();
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(look.multiline);
  label->setAlignment((look.align == Align::Center ? Qt::AlignHCenter : Qt::AlignLeft) |
                      (look.multiline ? Qt::AlignTop : Qt::AlignVCenter));
  if (look.selectable) {
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setFocusPolicy(Qt::StrongFocus);
  }
  takeFont(*label, look);
  return {label, [label, &record] { showLabel(*label, record); }, {}, {}};
}

ControlView textFieldView(TextField& record, QWidget& content) {
  auto* field = new DropLineEdit(&content);
  field->setMaxLength(std::numeric_limits<int>::max());
  field->setPlaceholderText(shownText(record.LookOf().placeholder));
  takeFont(*field, record.LookOf());
  QObject::connect(field, &QLineEdit::textChanged, field,
                   [&record](const QString& text) { record.PersonTypes(text.toStdString()); });
  return {field, [field, &record] { showField(*field, record); }, {}, {}};
}

ControlView textAreaView(TextArea& record, QWidget& content) {
  auto* area = new QPlainTextEdit(&content);
  area->setReadOnly(true);
  area->setTabChangesFocus(true);
  area->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  takeFont(*area, record.LookOf());
  return {area, [area, &record] { showArea(*area, record); }, {}, {}};
}
