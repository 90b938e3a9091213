#include "desktop/dialogs.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <algorithm>

#include "app/FileTypes1.h"
#include "desktop/shown_text.h"

namespace {

constexpr qsizetype kLongestMessage = 1200;
constexpr qsizetype kLongestCause = 300;
constexpr qsizetype kMostLines = 20;
constexpr qsizetype kUsualLine = 80;  // characters after which a message box breaks a line
constexpr qsizetype kLongestStep = 100;

// Few enough to keep the button below on the screen, whatever the font.
qsizetype mostLines() {
  const int high = QGuiApplication::primaryScreen()->availableSize().height() / 2;
  return std::min<qsizetype>(kMostLines, high / QFontMetrics(QApplication::font()).lineSpacing());
}

QString messageText(const std::string& text) {
  const QString shown = withBreaks(shownText(text, Lines::Many, kLongestMessage));
  QStringList kept;
  qsizetype left = mostLines();
  for (const QString& line : shown.split(QChar(u'\n'))) {
    const qsizetype needed = 1 + line.size() / kUsualLine;
    kept << (needed > left ? line.left(left * kUsualLine) + QChar(u'\u2026') : line);
    left -= needed;
    if (left < 0) break;
  }
  return kept.join(QChar(u'\n'));
}

// "*.txt *.text" for ".text;.txt": the shortest extension comes first.
QString patternsOf(const FileType& type) {
  QStringList extensions = QString::fromStdString(type.Extensions).split(QChar(u';'));
  std::ranges::stable_sort(extensions, {}, &QString::size);
  return QChar(u'*') + extensions.join(QStringLiteral(" *"));
}

// There is only one type of file to ask for.
QStringList nameFiltersOf(const std::string& filter) {
  const QString all = QObject::tr("All files (*)");
  if (filter.empty()) return {all};
  return {QObject::tr("Text files (%1)").arg(patternsOf(FileTypes1::Text())), all};
}

QString saveTitle(const std::string& step) {
  const QString save = QObject::tr("Save");
  return step.empty() ? save : save + QStringLiteral(" \u2013 ") + shownText(step, Lines::One, kLongestStep);
}

}  // namespace

std::unique_ptr<QMessageBox> makeMessage(const std::string& text, const std::string& cause, QWidget* parent) {
  auto box = std::make_unique<QMessageBox>(parent);
  box->setWindowTitle(QStringLiteral("Ravelyn"));
  box->setTextFormat(Qt::PlainText);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box->setText(messageText(text));
  box->setInformativeText(withBreaks(shownText(cause, Lines::One, kLongestCause)));
  // The box's text format doesn't apply to the cause, in which tags would be taken for markup.
  for (QLabel* label : box->findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  box->setStandardButtons(QMessageBox::Ok);
  box->setDefaultButton(QMessageBox::Ok);
  box->setEscapeButton(QMessageBox::Ok);
  return box;
}

std::unique_ptr<QMessageBox> makeCannotOpen(const QString& message, const std::string& what,
                                            QWidget* parent) {
  auto box = makeMessage(message.toStdString() + "\n\n" + what, "", parent);
  QPushButton* copy = box->addButton(QObject::tr("Copy"), QMessageBox::ActionRole);
  QObject::connect(copy, &QPushButton::clicked, copy,
                   [what] { QGuiApplication::clipboard()->setText(QString::fromStdString(what)); });
  return box;
}

std::unique_ptr<QMessageBox> makeReplaceQuestion(const QString& path, QWidget* parent) {
  const QString question = QObject::tr("\"%1\" already exists. Do you want to replace it?");
  auto box = makeMessage(question.arg(QFileInfo(path).fileName()).toStdString(), "", parent);
  box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  box->setDefaultButton(QMessageBox::No);
  box->setEscapeButton(QMessageBox::No);
  return box;
}

QString withExtension(const QString& path, const std::string& suggested) {
  static const QRegularExpression extension(QStringLiteral("\\.(?=[0-9]*[A-Za-z])[0-9A-Za-z]{1,8}$"));
  const QString own = QFileInfo(QString::fromStdString(suggested)).suffix();
  const bool isWhole = own.isEmpty() || extension.match(QFileInfo(path).fileName()).hasMatch();
  return isWhole ? path : path + QChar(u'.') + own;
}

std::unique_ptr<QFileDialog> makeSaveDialog(const std::string& filter, const std::string& name,
                                            const QString& folder, const std::string& step, QWidget* parent) {
  auto dialog = std::make_unique<QFileDialog>(parent);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setWindowTitle(saveTitle(step));
  dialog->setFileMode(QFileDialog::AnyFile);
  dialog->setOption(QFileDialog::DontConfirmOverwrite);  // Qt's own question would block all windows
  dialog->setNameFilters(nameFiltersOf(filter));
  dialog->setDefaultSuffix(QFileInfo(QString::fromStdString(name)).suffix());
  dialog->setDirectory(folder);
  dialog->selectFile(QDir(folder).filePath(QString::fromStdString(name)));
  return dialog;
}
