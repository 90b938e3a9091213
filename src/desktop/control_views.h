// One widget for each control, made from its record by a function for each kind. The widget
// reports what the person does by the record's Person... calls; update brings it in line with
// the record. Place, Enabled and Visible are the window view's affair, which is the same for all.
#pragma once

#include <QString>
#include <functional>

#include "runtime/Buttons.h"
#include "runtime/Control.h"
#include "runtime/Listbox.h"
#include "runtime/TextControls.h"

class QAbstractButton;
class QWidget;

struct ControlView {
  QWidget* widget = nullptr;       // owned by the window's content; nullptr for a line, which is painted
  std::function<void()> update;    // what the record holds beyond place and state
  std::function<void(bool)> busy;  // a command has started or ended; empty where it doesn't matter
  std::function<void()> forget;    // the record is about to go; empty if blocked signals are enough
};

ControlView makeControlView(Control& record, QWidget& content);

ControlView pushButtonView(Button& record, QWidget& content);
ControlView checkBoxView(CheckBox& record, QWidget& content);
ControlView radioButtonView(RadioButton& record, QWidget& content);
ControlView canvasView(Canvas& record, QWidget& content);
ControlView labelView(Label& record, QWidget& content);
ControlView textFieldView(TextField& record, QWidget& content);
ControlView textAreaView(TextArea& record, QWidget& content);
ControlView listboxView(Listbox& record, QWidget& content);
