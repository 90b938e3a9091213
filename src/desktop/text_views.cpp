// Labels, text fields and text areas.

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <algorithm>
#include <cstdlib>
#include <limits>

#include "desktop/colors.h"
#include "desktop/control_views.h"
#include "desktop/dropped_text.h"
#include "desktop/shown_text.h"
#include "runtime/Window.h"

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

// How wide a label can get without touching what stands to its right, or the edge of the window.
int freeWidth(const Label& record) {
  constexpr int kGap = 4;
  int right = record.Owner().Width();
  for (const Control* other : record.Owner().Controls()) {
    const bool beside = other->Top() < record.Top() + record.Height() &&
                        record.Top() < other->Top() + other->Height() && other->Left() > record.Left();
    if (beside && other->Visible() && other->Kind() != ControlKind::Line)
      right = std::min(right, other->Left());
  }
  return std::max(record.Width(), right - kGap - record.Left());
}

// With what rounding may take.
int neededWidth(const QFont& font, const QString& text) {
  return QFontMetrics(font).horizontalAdvance(text) + 2;
}

// Takes the label's own font, or a little smaller one in which text fits.
void fitFont(QLabel& label, const Look& look, const QString& text, int width) {
  constexpr int kSmaller = 2;  // pixels at most
  label.setFont(QFont());
  takeFont(label, look);
  QFont font = label.font();
  for (int i = 0; i < kSmaller && neededWidth(font, text) > width; ++i)
    font.setPixelSize(QFontInfo(font).pixelSize() - 1);
  label.setFont(font);
}

// A text that doesn't fit takes free space to its right, as fonts differ, and a little smaller letters. What
// doesn't fit then either is cut with "…", or, where it has several lines, at the label's edge; the tool tip
// has the whole.
void showLabel(QLabel& label, const Label& record) {
  const bool multiline = record.LookOf().multiline;
  const QString full = shownText(record.Text(), multiline ? Lines::Many : Lines::One, kLongestLabel);
  const int width = multiline || record.LookOf().align != Align::Left
                        ? record.Width()
                        : std::clamp(neededWidth(label.font(), full), record.Width(), freeWidth(record));
  label.resize(width, record.Height());
  if (!multiline && label.text() != full) fitFont(label, record.LookOf(), full, width);
  const QString shown =
      multiline ? withBreaks(full) : label.fontMetrics().elidedText(full, Qt::ElideRight, width);
  if (label.text() != shown) label.setText(shown);
  const bool fits = multiline ? label.heightForWidth(record.Width()) <= record.Height() : shown == full;
  label.setToolTip(fits ? QString() : plainToolTip(full));
  label.setAccessibleName(full);
  takeColor(label, record.LookOf());
}

bool isInClipboard(const QString& text) {
  const QClipboard& clipboard = *QGuiApplication::clipboard();
  const auto holds = [&](QClipboard::Mode mode) {
    return clipboard.text(mode).simplified() == text.simplified();
  };
  return holds(QClipboard::Clipboard) || (clipboard.supportsSelection() && holds(QClipboard::Selection));
}

// A link that is dropped takes the place of what stood there; text moved inside the field is the
// field's own affair.
class FieldEdit : public QLineEdit {
 public:
  FieldEdit(TextField& record, QWidget& content) : QLineEdit(&content), record_(record) {
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) { noticePaste(text); });
    connect(this, &QLineEdit::textChanged, this, [this] { report(); });
  }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override {
    takes(*event) ? acceptCopy(*event) : QLineEdit::dragEnterEvent(event);
  }
  void dragMoveEvent(QDragMoveEvent* event) override {
    takes(*event) ? acceptCopy(*event) : QLineEdit::dragMoveEvent(event);
  }
  void dropEvent(QDropEvent* event) override {
    if (!takes(*event)) return QLineEdit::dropEvent(event);
    arrive(*droppedText(*event->mimeData()));
    setFocus(Qt::OtherFocusReason);
    acceptCopy(*event);
  }

 private:
  bool takes(const QDropEvent& event) const {
    return droppedText(*event.mimeData()) && event.source() != this && !isReadOnly() && !signalsBlocked();
  }
  // By an insertion, which the user can undo.
  void arrive(const QString& text) {
    record_.PersonDrops(text.toStdString());
    const QString arrived = QString::fromStdString(record_.Text());
    if (arrived == this->text()) return;
    selectAll();
    insert(arrived);
  }
  // There are many ways to paste, and none of them says so. But more than one character changes at once, the
  // field holds just what the clipboard does, and unlike after an undo there is nothing to redo.
  void noticePaste(const QString& text) {
    if (std::abs(text.size() - length_) > 1 && !isRedoAvailable() && isInClipboard(text)) arrive(text);
  }
  // What stands there now: by the time that a change is signalled, a link may have taken the place of what
  // was pasted.
  void report() {
    length_ = text().size();
    record_.PersonTypes(text().toStdString());
  }

  TextField& record_;
  qsizetype length_ = 0;
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
  auto* field = new FieldEdit(record, content);
  field->setMaxLength(std::numeric_limits<int>::max());
  field->setPlaceholderText(shownText(record.LookOf().placeholder));
  takeFont(*field, record.LookOf());
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
