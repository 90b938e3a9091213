#include "desktop/WindowView.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollArea>
#include <algorithm>
#include <utility>

#include "desktop/Content.h"
#include "desktop/Group.h"
#include "desktop/dropped_text.h"
#include "desktop/scale.h"
#include "desktop/shown_text.h"
#include "desktop/spoken_names.h"
#include "runtime/Application.h"

namespace {

constexpr int kFrame = 16;  // milliseconds

Qt::WindowFlags flagsOf(const WindowFrame& frame) {
  Qt::WindowFlags flags =
      Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
  flags.setFlag(Qt::WindowCloseButtonHint, frame.closeButton);
  flags.setFlag(Qt::WindowMinimizeButtonHint, frame.minimizeButton);
  flags.setFlag(Qt::WindowMaximizeButtonHint, frame.maximizeButton);
  flags.setFlag(Qt::WindowFullscreenButtonHint, frame.fullScreenButton);
  return flags;
}

}  // namespace

WindowView::WindowView(Window& record, const ChooseItem& choose)
    : record_(&record), content_(new Content(record, *this)), status_(*this, [this] { stopCommand(); }) {
  content_->hide();
  setUpMenu(choose);
  setUpFrame();
  frame_.setSingleShot(true);
  frame_.setInterval(kFrame);
  connect(&frame_, &QTimer::timeout, this, [this] { flush(); });
}

// While the screen makes room for the window, its controls are made; they are drawn with it at once.
void WindowView::fill() {
  addControls();
  record_->OnChange = [this](Control& control) { markDirty(control); };
  layOut();
  setUpFocus();
  flush();
  content_->show();
}

WindowView::~WindowView() { forget(); }

void WindowView::setUpFrame() {
  const WindowFrame& frame = record_->Frame();
  setWindowFlags(flagsOf(frame));
  setWindowTitle(shownText(frame.title));
  setAcceptDrops(true);
  ensurePolished();
  takeSize();
}

void WindowView::setUpMenu(const ChooseItem& choose) {
  const MenuBar* menus = record_->Owner().CurrentMenuBar();
  if (!menus) return;
  if (!record_->Frame().menuBar) return addShortcuts(*this, *menus, choose);
  bar_ = new QMenuBar(this);
  fillMenuBar(*bar_, *menus, choose);
}

// Raised in the order of reading, they are read in it.
void WindowView::addControls() {
  const auto groups = makeGroups(*record_, *content_);
  for (Control* control : record_->Controls()) {
    const auto group = groups.find(control);
    addControl(*control, group == groups.end() ? *content_ : *group->second);
  }
  for (const ControlGroup& gathered : record_->Groups()) {
    groups.at(gathered.controls.front())->setHeading(widgetOf(*gathered.controls.front()));
    for (const Control* control : gathered.controls) widgetOf(*control)->raise();
  }
}

// What the person did to a widget may not be what its record made of it.
void WindowView::addControl(Control& control, QWidget& parent) {
  Entry entry{&control, makeControlView(control, parent), true};
  const auto recheck = [this, &control] {
    if (record_) markDirty(control);
  };
  if (auto* button = dynamic_cast<QAbstractButton*>(entry.view.widget)) {
    connect(button, &QAbstractButton::clicked, this, recheck);
    connect(button, &QAbstractButton::toggled, this, recheck);
  }
  if (auto* field = dynamic_cast<QLineEdit*>(entry.view.widget))
    connect(field, &QLineEdit::textChanged, this, recheck);
  places_[&control] = entries_.size();
  entries_.push_back(std::move(entry));
}

// The first field that makes something of what arrives takes what is dropped anywhere on the window.
TextField* WindowView::fieldForDrops() const {
  for (const Entry& entry : entries_) {
    auto* field = dynamic_cast<TextField*>(entry.record);
    if (record_ && field && field->Arriving) return field;
  }
  return nullptr;
}

void WindowView::dragEnterEvent(QDragEnterEvent* event) {
  if (fieldForDrops() && droppedText(*event->mimeData())) acceptCopy(*event);
}

void WindowView::dropEvent(QDropEvent* event) {
  TextField* field = fieldForDrops();
  const auto text = droppedText(*event->mimeData());
  if (!field || !text) return;
  acceptCopy(*event);
  field->PersonDrops(text->toStdString());
  focus(*field);
}

void WindowView::bringForward() {
  flush();
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
  if (record_ && content_->isHidden()) fill();
}

void WindowView::focus(const Control& control) {
  activateWindow();
  QWidget* const widget = widgetOf(control);
  if (!widget) return;
  widget->setFocus();
  if (scroller_) scroller_->ensureWidgetVisible(widget);
}

void WindowView::showRunning(const QString& what) {
  setCursor(Qt::BusyCursor);
  const bool hasCommands = setBusy(true);
  if (hasCommands) status_.show(what + QChar(u'\u2026'), true);
}

void WindowView::showEnded(const QString& outcome) {
  unsetCursor();
  const bool hasCommands = setBusy(false);
  if (hasCommands) status_.show(outcome, false);
}

// Where a command starts, its state is shown. False for a window of which none does.
bool WindowView::setBusy(bool busy) {
  bool hasCommands = false;
  for (Entry& entry : entries_) {
    if (!entry.view.busy) continue;
    entry.view.busy(busy);
    hasCommands = true;
  }
  return hasCommands;
}

void WindowView::forget() {
  if (!std::exchange(record_, nullptr)) return;
  frame_.stop();
  static_cast<Content*>(content_)->forget();
  for (Entry& entry : entries_) {
    entry.record->Owner().OnChange = nullptr;
    if (entry.view.widget) entry.view.widget->blockSignals(true);
    if (entry.view.forget) entry.view.forget();
  }
}

void WindowView::markDirty(const Control& control) {
  entries_[places_.at(&control)].dirty = true;
  if (!frame_.isActive()) frame_.start();
}

void WindowView::markAllDirty() {
  for (Entry& entry : entries_) entry.dirty = true;
  if (!frame_.isActive()) frame_.start();
}

void WindowView::flush() {
  if (!record_) return;
  frame_.stop();
  bool names = false;
  for (Entry& entry : entries_) {
    if (!std::exchange(entry.dirty, false)) continue;
    apply(entry);
    names |= entry.record->Kind() == ControlKind::Label;
  }
  if (names) nameAll();
}

void WindowView::apply(Entry& entry) {
  const Control& record = *entry.record;
  QWidget* widget = entry.view.widget;
  if (!widget) return content_->update();
  widget->setGeometry(placeOf(record));
  widget->setEnabled(record.Enabled());
  if (widget->isHidden() == record.Visible()) widget->setVisible(record.Visible());
  entry.view.update();
}

void WindowView::nameAll() {
  for (Entry& entry : entries_) {
    if (!entry.view.widget || hasOwnName(*entry.record)) continue;
    entry.view.widget->setAccessibleName(spokenName(*entry.record));
    joinToLabel(entry);
  }
}

// A label with a buddy takes "&" for the mark of an access key, so one that holds it has none.
void WindowView::joinToLabel(const Entry& entry) {
  const Label* record = labelOf(*entry.record);
  auto* label = record ? dynamic_cast<QLabel*>(widgetOf(*record)) : nullptr;
  if (!label) return;
  QWidget* buddy = label->text().contains(QChar(u'&')) ? nullptr : entry.view.widget;
  if (label->buddy() != buddy) label->setBuddy(buddy);
}

void WindowView::resizeEvent(QResizeEvent*) {
  if (!record_) return;
  layOut();
  if (settled_) record_->PersonResizes(inPoints(content_->width()), inPoints(content_->height()));
  flush();
}

void WindowView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  settled_ = true;
}

void WindowView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (!record_) return;
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) record_->PersonActivates();
  const bool looks = event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange ||
                     event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange;
  if (!looks) return;
  drawnAt_ == scale() ? status_.takeLetters() : takeSize();
  layOut();
  markAllDirty();
}

void WindowView::closeEvent(QCloseEvent* event) {
  event->accept();
  if (record_) record_->PersonCloses();
}

Control* WindowView::controlOf(const QWidget* widget) const {
  const auto at = std::find_if(entries_.begin(), entries_.end(),
                               [&](const Entry& entry) { return widget && entry.view.widget == widget; });
  return record_ && at != entries_.end() ? at->record : nullptr;
}

QWidget* WindowView::widgetOf(const Control& control) const {
  const auto at = places_.find(&control);
  return at == places_.end() ? nullptr : entries_[at->second].view.widget;
}
