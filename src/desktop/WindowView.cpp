#include "desktop/WindowView.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QScrollArea>
#include <algorithm>
#include <utility>

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

// The controls are made while the window system places the window, and are drawn with it at once.
void WindowView::fill() {
  addControls();
  record_->OnChange = [this](Control& control) { markDirty(control); };
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

// A screen reader reads the controls of a group in the order in which they are raised.
void WindowView::addControls() {
  std::unordered_map<const Control*, QWidget*> parents;
  for (const ControlGroup& gathered : record_->Groups()) {
    groups_.push_back(new Group(*content_));
    for (const Control* control : gathered.controls) parents[control] = groups_.back();
  }
  for (Control* control : record_->Controls()) {
    const auto parent = parents.find(control);
    addControl(*control, parent == parents.end() ? *content_ : *parent->second);
  }
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    const std::vector<const Control*>& gathered = record_->Groups()[i].controls;
    groups_[i]->setHeading(widgetOf(*gathered.front()));
    for (const Control* control : gathered) widgetOf(*control)->raise();
  }
}

// The record may not accept what the user does to the widget, so the widget is updated after every change.
void WindowView::addControl(Control& control, QWidget& parent) {
  const auto changed = [this, &control] {
    if (record_) markDirty(control);
  };
  places_[&control] = entries_.size();
  entries_.push_back({&control, makeControlView(control, parent, changed), true});
}

// A drop anywhere on the window goes to the first field that handles arriving text.
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
  field->UserDrops(text->toStdString());
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

// False if no button of this window starts a command: such a window doesn't show their state.
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
  content_->forget();
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

void WindowView::flush() {
  if (!record_) return;
  frame_.stop();
  for (Group* group : groups_) group->setGeometry(content_->rect());
  bool names = false;
  for (Entry& entry : entries_) {
    if (!std::exchange(entry.dirty, false)) continue;
    apply(entry);
    names |= entry.record->Kind() == ControlKind::Label;
  }
  if (names) nameAll();
  for (Group* group : groups_) group->setMask(group->childrenRegion());
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

// A label with a buddy reads "&" as the mark of an access key, so a label that contains one gets no buddy.
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
  if (settled_) record_->UserResizes(inPoints(content_->width()), inPoints(content_->height()));
  flush();
}

void WindowView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  settled_ = true;
}

void WindowView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (!record_) return;
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) record_->UserActivates();
  const bool looks = event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange ||
                     event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange;
  if (!looks) return;
  drawnScale_ == scale() ? status_.updateFont() : takeSize();
  layOut();
  for (const Entry& entry : entries_) markDirty(*entry.record);
}

void WindowView::closeEvent(QCloseEvent* event) {
  event->accept();
  if (record_) record_->UserCloses();
}

Control* WindowView::controlOf(const QWidget* widget) const {
  const auto at = std::ranges::find(entries_, widget, [](const Entry& entry) { return entry.view.widget; });
  return record_ && widget && at != entries_.end() ? at->record : nullptr;
}

QWidget* WindowView::widgetOf(const Control& control) const {
  const auto at = places_.find(&control);
  return at == places_.end() ? nullptr : entries_[at->second].view.widget;
}
