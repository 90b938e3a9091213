// One widget for each control, made from its record by one function for each kind. The widget reports what
// the user does by the record's User... calls. WindowView sets place, Enabled and Visible, which are the
// same for all kinds.
#pragma once

#include <functional>

#include "runtime/Buttons.h"
#include "runtime/Listbox.h"
#include "runtime/TextControls.h"

class QWidget;

struct ControlView {
  QWidget* widget = nullptr;            // owned by the window's content; nullptr for a line, which is painted
  std::function<void()> update;         // shows the record's contents
  std::function<void(bool)> busy = {};  // a command has started or ended; empty if that changes nothing
  std::function<void()> forget = {};    // the record will be destroyed; empty if blocked signals are enough
};

// Called after the user has changed what the widget shows.
using Changed = std::function<void()>;

ControlView makeControlView(Control& record, QWidget& content, const Changed& changed);

ControlView pushButtonView(Button& record, QWidget& content, const Changed& changed);
ControlView checkBoxView(CheckBox& record, QWidget& content, const Changed& changed);
ControlView radioButtonView(RadioButton& record, QWidget& content, const Changed& changed);
ControlView canvasView(Canvas& record, QWidget& content);
ControlView labelView(Label& record, QWidget& content);
ControlView textFieldView(TextField& record, QWidget& content, const Changed& changed);
ControlView textAreaView(TextArea& record, QWidget& content);
ControlView listboxView(Listbox& record, QWidget& content);
