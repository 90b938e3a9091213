// The Edit menu's commands on whatever widget has the focus: a text field, a text area, a label
// whose text can be selected, or a list, of which rows can be copied and selected.
#pragma once

#include "runtime/Platform.h"

class QWidget;

// widget may be nullptr, for which nothing can be done.
bool canEdit(const QWidget* widget, EditAction action);
void edit(QWidget* widget, EditAction action);
