#include "desktop/StatusLine.h"

#include <QLabel>
#include <QPushButton>
#include <QStyle>

#include "desktop/fitting.h"
#include "desktop/tool_tips.h"
#include "runtime/Control.h"

namespace {
constexpr int kWithdrawalDelay = 2000;  // milliseconds
}

StatusLine::StatusLine(QWidget& window, const std::function<void()>& stop)
    : label_(new QLabel(&window)),
      running_(new Announcement(window)),
      ended_(new Announcement(window)),
      stop_(new QPushButton(QObject::tr("Stop"), &window)) {
  label_->setTextFormat(Qt::PlainText);
  label_->setAutoFillBackground(true);  // in a small window it covers controls
  label_->hide();
  stop_->setObjectName(QStringLiteral("stop"));
  stop_->setFocusPolicy(Qt::TabFocus);
  stop_->setAutoDefault(false);
  stop_->hide();
  QObject::connect(stop_, &QPushButton::clicked, stop_, stop);
  withdrawal_.setSingleShot(true);
  QObject::connect(&withdrawal_, &QTimer::timeout, running_, [this] { running_->withdraw(); });
}

void StatusLine::updateFont() {
  constexpr int kSize = 11;  // points
  for (QWidget* part : {static_cast<QWidget*>(label_), static_cast<QWidget*>(stop_)})
    takeFont(*part, fontOf({.fontSize = kSize}));
}

void StatusLine::place(const QRect& line) {
  QRect words = line, button = line;
  button.setLeft(line.right() + 1 - stop_->sizeHint().width());
  words.setRight(button.left() - 1);
  const bool rightToLeft = label_->layoutDirection() == Qt::RightToLeft;
  label_->setAlignment((rightToLeft ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter);
  label_->setGeometry(QStyle::visualRect(label_->layoutDirection(), line, words));
  stop_->setGeometry(QStyle::visualRect(label_->layoutDirection(), line, button));
  fit();
}

void StatusLine::fit() {
  const QString shown = label_->fontMetrics().elidedText(text_, Qt::ElideMiddle, label_->width());
  label_->setText(shown);
  setTip(*label_, shown == text_ ? QString() : text_);
}

void StatusLine::show(const QString& text, bool running) {
  text_ = text;
  fit();
  label_->setAccessibleName(text);
  label_->setVisible(!text.isEmpty());
  label_->raise();
  stop_->setVisible(running);
  stop_->raise();
  if (running) ended_->withdraw();
  running ? withdrawal_.stop() : withdrawal_.start(kWithdrawalDelay);
}
