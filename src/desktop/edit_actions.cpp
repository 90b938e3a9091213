#include "desktop/edit_actions.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>

#include "desktop/ListView.h"

namespace {

bool clipboardHasText() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  return data && data->hasText();
}

bool canEditField(const QLineEdit& field, EditAction action) {
  if (action == EditAction::Undo) return field.isUndoAvailable();
  if (action == EditAction::Paste) return clipboardHasText();
  if (action == EditAction::SelectAll) return !field.text().isEmpty();
  return field.hasSelectedText();
}

void editField(QLineEdit& field, EditAction action) {
  switch (action) {
    case EditAction::Undo:
      return field.undo();
    case EditAction::Cut:
      return field.cut();
    case EditAction::Copy:
      return field.copy();
    case EditAction::Paste:
      return field.paste();
    case EditAction::Clear:
      return field.del();
    case EditAction::SelectAll:
      return field.selectAll();
  }
}

// Text that can't be edited can still be copied and selected.
bool canRead(EditAction action, bool hasSelection, bool canSelectAll) {
  return (action == EditAction::Copy && hasSelection) || (action == EditAction::SelectAll && canSelectAll);
}

}  // namespace

bool canEdit(const QWidget* widget, EditAction action) {
  if (const auto* field = dynamic_cast<const QLineEdit*>(widget)) return canEditField(*field, action);
  if (const auto* area = dynamic_cast<const QPlainTextEdit*>(widget))
    return canRead(action, area->textCursor().hasSelection(), !area->document()->isEmpty());
  if (const auto* label = dynamic_cast<const QLabel*>(widget))
    return canRead(action, label->hasSelectedText(), !label->text().isEmpty());
  if (const auto* list = dynamic_cast<const ListView*>(widget))
    return canRead(action, list->selectionModel()->hasSelection(), list->severalSelectable());
  return false;
}

void edit(QWidget* widget, EditAction action) {
  if (!canEdit(widget, action)) return;
  const bool copies = action == EditAction::Copy;
  if (auto* field = dynamic_cast<QLineEdit*>(widget)) {
    editField(*field, action);
  } else if (auto* area = dynamic_cast<QPlainTextEdit*>(widget)) {
    copies ? area->copy() : area->selectAll();
  } else if (auto* label = dynamic_cast<QLabel*>(widget)) {
    copies ? QGuiApplication::clipboard()->setText(label->selectedText())
           : label->setSelection(0, static_cast<int>(label->text().size()));
  } else if (auto* list = dynamic_cast<ListView*>(widget)) {
    copies ? list->copySelection() : list->selectAll();
  }
}
