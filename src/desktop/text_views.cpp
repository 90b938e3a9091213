// Labels, text fields and text areas.

#include <QClipboard>
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
#include "desktop/fitting.h"
#include "desktop/scale.h"
#include "desktop/shown_text.h"
#include "desktop/tool_tips.h"

namespace {

constexpr qsizetype kLongestLabel = 10'000;
constexpr qsizetype kLongestArea = 100'000;
constexpr qsizetype kLongestLine = 1'000;

void takeColor(QWidget& widget, QPalette::ColorRole role, const QColor& color) {
  QPalette palette = widget.palette();
  if (palette.color(role) == color) return;
  palette.setColor(role, color);
  widget.setPalette(palette);
}

// Towards the side on which reading begins on this desktop, whatever the script of the text.
Qt::Alignment alignmentOf(const Look& look) {
  const Qt::Alignment vertical = look.multiline ? Qt::AlignTop : Qt::AlignVCenter;
  if (look.align == Align::Center) return Qt::AlignHCenter | vertical;
  const bool rightToLeft = QGuiApplication::layoutDirection() == Qt::RightToLeft;
  return (rightToLeft ? Qt::AlignRight | Qt::AlignAbsolute : Qt::Alignment(Qt::AlignLeft)) | vertical;
}

void showWords(QLabel& label, const QString& full, const QString& shown, bool fits) {
  if (label.text() != shown) label.setText(shown);
  setTip(label, fits ? QString() : full);
  label.setAccessibleName(full);
}

void showParagraphs(QLabel& label, const Label& record, QSize place) {
  const QString full = shownText(record.Text(), Lines::Many, kLongestLabel);
  const QString shown = withBreaks(full);
  const auto fits = [&](const QFont& font) {
    const QRect wide(0, 0, place.width(), QWIDGETSIZE_MAX);
    return QFontMetrics(font).boundingRect(wide, Qt::TextWordWrap, shown).height() <= place.height();
  };
  const QFont font = fittingFont(record.Appearance(), fits);
  takeFont(label, font);
  showWords(label, full, shown, fits(font));
}

// A text that still doesn't fit ends with "…", or, if it has several lines, is cut at the label's edge; the
// tool tip shows all of it.
void showLabel(QLabel& label, const Label& record) {
  const Look& look = record.Appearance();
  const QSize place = placeOf(record).size();
  if (look.multiline) return showParagraphs(label, record, place);
  const QString full = shownText(record.Text(), Lines::One, kLongestLabel);
  const int widest = look.align == Align::Left ? freeWidth(record) : place.width();
  const QFont font =
      fittingFont(look, [&](const QFont& tried) { return neededWidth(tried, full) <= widest; });
  takeFont(label, font);
  label.setGeometry(
      placeOf(record, std::clamp(neededWidth(font, full), std::min(place.width(), widest), widest)));
  const QString shown = QFontMetrics(font).elidedText(full, Qt::ElideRight, label.width());
  showWords(label, full, shown, shown == full);
}

bool isInClipboard(const QString& text) {
  const QClipboard& clipboard = *QGuiApplication::clipboard();
  const auto holds = [&](QClipboard::Mode mode) {
    return clipboard.text(mode).simplified() == text.simplified();
  };
  return holds(QClipboard::Clipboard) || (clipboard.supportsSelection() && holds(QClipboard::Selection));
}

// A dropped link replaces the field's text; text dragged within the field is moved as in any field.
class FieldEdit : public QLineEdit {
 public:
  FieldEdit(TextField& record, QWidget& content, const Changed& changed)
      : QLineEdit(&content), record_(record) {
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) { noticePaste(text); });
    connect(this, &QLineEdit::textChanged, this, [this] { report(); });
    connect(this, &QLineEdit::textChanged, this, changed);
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
    record_.UserDrops(text.toStdString());
    const QString arrived = QString::fromStdString(record_.Text());
    if (arrived == this->text()) return;
    selectAll();
    insert(arrived);
  }
  // Qt doesn't report a paste. It is recognised by its effects: the length changes by more than one, the
  // field contains just the clipboard's text, and, unlike after an undo, there is nothing to redo.
  void noticePaste(const QString& text) {
    if (std::abs(text.size() - length_) > 1 && !isRedoAvailable() && isInClipboard(text)) arrive(text);
  }
  // Reads the field itself: by the time a change is signalled, a link may have replaced the pasted text.
  void report() {
    length_ = text().size();
    record_.UserTypes(text().toStdString());
  }

  TextField& record_;
  qsizetype length_ = 0;
};

// A change by code keeps the cursor's position if the text is long enough.
void showField(QLineEdit& field, const TextField& record) {
  const QPalette& palette = field.palette();
  takeColor(field, QPalette::PlaceholderText,
            mutedOn(palette.color(QPalette::Base), palette.color(QPalette::Text)));
  const QString text = QString::fromStdString(record.Text());
  if (field.text() == text) return;
  const QSignalBlocker quiet(&field);
  const int cursor = field.cursorPosition();
  field.setText(text);
  field.setCursorPosition(cursor);
}

bool isInSight(const QWidget& widget, const Control& record) {
  return record.Visible() && widget.parentWidget()->rect().intersects(placeOf(record));
}

// A document is one line, and the time to lay out a line grows faster than its length. So a long line is
// shown as several, broken at blanks if it has any.
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

// The record may hold a document of any size, and changes often while the area is out of sight.
void showArea(QPlainTextEdit& area, const TextArea& record) {
  const bool inSight = isInSight(area, record);
  area.setFocusPolicy(inSight ? Qt::StrongFocus : Qt::NoFocus);
  const QString text = inSight ? inLines(shownText(record.Text(), Lines::Many, kLongestArea)) : QString();
  if (area.toPlainText() != text) area.setPlainText(text);
}

}  // namespace

ControlView labelView(Label& record, QWidget& content) {
  auto* label = new QLabel(&content);
  const Look& look = record.Appearance();
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(look.multiline);
  if (look.selectable) {
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setFocusPolicy(Qt::StrongFocus);
  }
  const auto update = [label, &record, &look] {
    label->setAlignment(alignmentOf(look));
    showLabel(*label, record);
    if (!look.color) return;
    const QColor ground = label->palette().color(QPalette::Window);
    takeColor(*label, QPalette::WindowText, legibleOn(ground, QColor::fromRgb(*look.color)));
  };
  return {label, update};
}

ControlView textFieldView(TextField& record, QWidget& content, const Changed& changed) {
  auto* field = new FieldEdit(record, content, changed);
  field->setMaxLength(std::numeric_limits<int>::max());
  field->setPlaceholderText(shownText(record.Appearance().placeholder));
  return {field, [field, &record] { showField(*field, record); }};
}

ControlView textAreaView(TextArea& record, QWidget& content) {
  auto* area = new QPlainTextEdit(&content);
  area->setReadOnly(true);
  area->setTabChangesFocus(true);
  area->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  return {area, [area, &record] { showArea(*area, record); }};
}
