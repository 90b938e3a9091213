// The main form written by hand in Qt's usual way: the same controls at the same places, with the same fonts
// and colours, made one after the other and shown.

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

template <typename Widget>
Widget* placed(Widget* widget, int left, int top, int width, int height) {
  widget->setGeometry(left, top, width, height);
  return widget;
}

void addLabel(QWidget& form, int left, int top, int width, int height, const char* text, int size,
              bool grey) {
  auto* label = placed(new QLabel(QString::fromUtf8(text), &form), left, top, width, height);
  QFont font = label->font();
  if (size > 0) font.setPixelSize(size);
  label->setFont(font);
  QPalette palette = label->palette();
  if (grey) palette.setColor(QPalette::WindowText, QColor(0x6F, 0x75, 0x73));
  label->setPalette(palette);
}

void addLine(QWidget& form, int x1, int y1, int x2, int y2) {
  auto* line = placed(new QFrame(&form), x1, y1, x2 - x1 + 1, y2 - y1 + 1);
  line->setFrameShape(x1 == x2 ? QFrame::VLine : QFrame::HLine);
}

void addTexts(QWidget& form) {
  addLabel(form, 30, 103, 280, 20, "2. Choose an available language:", 14, false);
  addLabel(form, 30, 20, 305, 23, "1. Paste in YouTube URL and click Search:", 14, false);
  addLabel(form, 306, 103, 236, 20, "3. Choose type of file to download:", 14, false);
  addLabel(form, 30, 71, 401, 20, "example: https://www.youtube.com/watch?v=hB7rV2kQx0w", 11, true);
  addLabel(form, 322, 22, 178, 20, "(requires internet connection)", 11, true);
  addLabel(form, 30, 375, 218, 20, "Search for a word or phrase in this video:", 0, true);
  auto* link = placed(new QLineEdit(&form), 30, 46, 404, 22);
  link->setPlaceholderText(QStringLiteral("https://www.youtube.com/watch?v=hB7rV2kQx0w"));
  placed(new QLineEdit(&form), 30, 397, 250, 22);
  placed(new QPlainTextEdit(&form), 689, 516, 489, 451)->setReadOnly(true);
  link->setFocus();
}

void addLists(QWidget& form) {
  placed(new QListWidget(&form), 30, 135, 250, 226)->setSelectionMode(QListWidget::ExtendedSelection);
  placed(new QListWidget(&form), 30, 558, 934, 272)->hide();
  placed(new QListWidget(&form), -86, 516, 934, 272)->hide();
}

void addButtons(QWidget& form) {
  placed(new QPushButton(QStringLiteral("Download"), &form), 307, 432, 228, 20);
  placed(new QPushButton(QStringLiteral("Search"), &form), 446, 47, 89, 20)->setDefault(true);
  placed(new QPushButton(QStringLiteral("Word Search"), &form), 30, 431, 135, 20);
  placed(new QRadioButton(QStringLiteral("SRT File"), &form), 319, 135, 100, 20);
  placed(new QRadioButton(QStringLiteral("WebVTT File"), &form), 319, 159, 202, 20);
  placed(new QRadioButton(QStringLiteral("Text Transcript"), &form), 319, 182, 199, 20);
  placed(new QCheckBox(QStringLiteral("Paragraph Form"), &form), 340, 205, 141, 20)->setEnabled(false);
  placed(new QCheckBox(QStringLiteral("Line-by-line"), &form), 340, 228, 199, 20)->setEnabled(false);
  placed(new QCheckBox(QStringLiteral("Include Timecode"), &form), 362, 251, 135, 20)->setEnabled(false);
  placed(new QCheckBox(QStringLiteral("Open File(s) After Saving"), &form), 332, 406, 199, 20)
      ->setChecked(true);
  auto* picture = placed(new QLabel(&form), 368, 279, 100, 100);
  picture->setPixmap(QPixmap(QStringLiteral(":/Ravelyn1001.png")));
  addLine(form, 307, 144, 307, 192);
  for (const int y : {143, 169, 192}) addLine(form, 308, y, 317, y);
}

void addMenus(QMenuBar& bar) {
  QMenu* file = bar.addMenu(QStringLiteral("&File"));
  file->addAction(QStringLiteral("New Window"))->setShortcut(QKeySequence::New);
  file->addAction(QStringLiteral("About Ravelyn"));
  file->addAction(QStringLiteral("Help"));
  file->addAction(QStringLiteral("&Quit"))->setShortcut(QKeySequence::Quit);
  QMenu* edit = bar.addMenu(QStringLiteral("&Edit"));
  edit->addAction(QStringLiteral("&Undo"))->setShortcut(QKeySequence::Undo);
  edit->addSeparator();
  edit->addAction(QStringLiteral("Cu&t"))->setShortcut(QKeySequence::Cut);
  edit->addAction(QStringLiteral("&Copy"))->setShortcut(QKeySequence::Copy);
  edit->addAction(QStringLiteral("&Paste"))->setShortcut(QKeySequence::Paste);
  edit->addAction(QStringLiteral("&Delete"));
  edit->addSeparator();
  edit->addAction(QStringLiteral("Select &All"))->setShortcut(QKeySequence::SelectAll);
}

}  // namespace

int main(int count, char** arguments) {
  QApplication qt(count, arguments);
  QWidget window;
  window.setWindowTitle(QStringLiteral("Ravelyn for YouTube"));
  QMenuBar menus(&window);
  addMenus(menus);
  const int above = menus.heightForWidth(562);
  menus.setGeometry(0, 0, 562, above);
  auto* form = placed(new QWidget(&window), 0, above, 562, 479);
  addTexts(*form);
  addLists(*form);
  addButtons(*form);
  window.setFixedSize(562, 479 + above);
  window.show();
  return QApplication::exec();
}
