#include "desktop/StatusLine.h"

#include <QLabel>
#include <QObject>
#include <QPushButton>
#include <QStyle>

#include "desktop/fitting.h"
#include "runtime/Control.h"

StatusLine::StatusLine(QWidget& content, const std::function<void()>& stop)
    : label_(new QLabel(&content)),
      running_(new Announcement(content)),
      ended_(new Announcement(content)),
      stop_(new QPushButton(QObject::tr("Stop"), &content)) {
  label_->setTextFormat(Qt::PlainText);
  label_->hide();
  stop_->setObjectName(QStringLiteral("stop"));
  stop_->setFocusPolicy(Qt::TabFocus);
  stop_->setAutoDefault(false);
  stop_->hide();
  QObject::connect(stop_, &QPushButton::clicked, stop_, stop);
}

void StatusLine::takeLetters() {
  constexpr int kSize = 11;  // points
  for (QWidget* part : {static_cast<QWidget*>(label_), static_cast<QWidget*>(stop_)})
    takeFont(*part, fontOf({.fontSize = kSize}));
}

void StatusLine::place(const QRect& line) {
  QRect words = line, button = line;
  button.setLeft(line.right() + 1 - stop_->sizeHint().width());
  words.setRight(button.left() - 1);
  label_->setGeometry(QStyle::visualRect(label_->layoutDirection(), line, words));
  stop_->setGeometry(QStyle::visualRect(label_->layoutDirection(), line, button));
}

void StatusLine::show(const QString& text, bool running) {
  label_->setText(label_->fontMetrics().elidedText(text, Qt::ElideMiddle, label_->width()));
  label_->setAccessibleName(text);
  label_->setVisible(!text.isEmpty());
  label_->raise();
  stop_->setVisible(running);
  stop_->raise();
}
