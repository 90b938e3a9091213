// The keyboard in a window: tab order, the button that Return presses, Escape, menus.

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <algorithm>

#include "desktop/WindowView.h"
#include "runtime/Application.h"

namespace {

bool isReturn(const QKeyEvent& event) {
  const bool plain = !(event.modifiers() & ~Qt::KeypadModifier);
  return plain && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter);
}

}  // namespace

std::vector<WindowView::Entry*> WindowView::inTabOrder() {
  std::vector<Entry*> order;
  for (Entry& entry : entries_) {
    if (entry.view.widget && entry.record->TabIndex() >= 0) order.push_back(&entry);
  }
  std::ranges::stable_sort(order, {}, [](const Entry* e) { return e->record->TabIndex(); });
  return order;
}

// A window opens with the focus in its first text field, or on its first control if it has no field.
void WindowView::setUpFocus() {
  const std::vector<Entry*> order = inTabOrder();
  for (std::size_t i = 1; i < order.size(); ++i)
    setTabOrder(order[i - 1]->view.widget, order[i]->view.widget);
  auto first = std::ranges::find(order, ControlKind::TextField, [](Entry* e) { return e->record->Kind(); });
  if (first == order.end()) first = order.begin();
  if (first != order.end()) (*first)->view.widget->setFocus();
  connect(qApp, &QApplication::focusChanged, &frame_, [this] { showDefaultButton(); });
}

// Of the buttons that Return may press: the one with the focus; else the one that follows the focused text
// field in the tab order; else the first.
WindowView::Entry* WindowView::defaultButton() {
  const std::vector<Entry*> order = inTabOrder();
  const auto isDefault = [](const Entry* e) { return e->record->Appearance().defaultButton; };
  const auto focused = std::ranges::find(order, focusWidget(), [](Entry* e) { return e->view.widget; });
  if (focused != order.end()) {
    if (isDefault(*focused)) return *focused;
    const auto next = std::next(focused);
    const bool inField = (*focused)->record->Kind() == ControlKind::TextField;
    if (inField && next != order.end() && isDefault(*next)) return *next;
  }
  const auto first = std::ranges::find_if(order, isDefault);
  return first == order.end() ? nullptr : *first;
}

void WindowView::showDefaultButton() {
  const Entry* now = record_ ? defaultButton() : nullptr;
  for (Entry& entry : entries_) {
    if (auto* button = dynamic_cast<QPushButton*>(entry.view.widget)) button->setDefault(&entry == now);
  }
}

// The command ends at its next wait or yield. False if none runs.
bool WindowView::stopCommand() {
  if (!record_ || !record_->Owner().IsCommandRunning()) return false;
  record_->Owner().StopCommand();
  return true;
}

// F10 opens the menu bar; Shift+F10 opens the context menu of the focused widget.
bool WindowView::openMenu(const QKeyEvent& event) {
  if (event.key() != Qt::Key_F10) return false;
  QWidget* const focused = focusWidget();
  if (event.modifiers() == Qt::ShiftModifier && focused) {
    const QPoint at = focused->rect().center();
    QContextMenuEvent wanted(QContextMenuEvent::Keyboard, at, focused->mapToGlobal(at));
    QApplication::sendEvent(focused, &wanted);
    return true;
  }
  if (event.modifiers() != Qt::NoModifier || !bar_ || bar_->isNativeMenuBar()) return false;
  QAction* const first = bar_->actions().constFirst();
  bar_->setActiveAction(first);
  first->menu()->setActiveAction(first->menu()->actions().constFirst());
  return true;
}

// For dialogs that were shown without the focus, and so receive no keys.
bool WindowView::dismissDialog() {
  const QList<QDialog*> dialogs = findChildren<QDialog*>(Qt::FindDirectChildrenOnly);
  const auto last =
      std::find_if(dialogs.rbegin(), dialogs.rend(), [](QDialog* each) { return !each->isHidden(); });
  if (last == dialogs.rend()) return false;
  (*last)->reject();
  return true;
}

// Escape stops the running command or dismisses a dialog; else it closes any window but the main form, as the
// desktop's usual key for closing does.
void WindowView::keyPressEvent(QKeyEvent* event) {
  const bool escapes = event->matches(QKeySequence::Cancel);
  if (openMenu(*event)) return event->accept();
  if (escapes && (stopCommand() || dismissDialog())) return event->accept();
  if (record_ && !record_->Frame().menuBar && (escapes || event->matches(QKeySequence::Close))) {
    event->accept();
    close();
    return;
  }
  Entry* button = record_ && isReturn(*event) ? defaultButton() : nullptr;
  if (!button) return QWidget::keyPressEvent(event);
  event->accept();
  button->record->UserClicks();
}
