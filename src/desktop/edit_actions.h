// The Edit menu's commands for the focused widget: a text field, a text area, a label whose text can be
// selected, or a list, whose rows can be copied and selected.
#pragma once

#include "runtime/Platform.h"

class QWidget;

// widget may be nullptr: then no action is possible.
bool canEdit(const QWidget* widget, EditAction action);
void edit(QWidget* widget, EditAction action);
