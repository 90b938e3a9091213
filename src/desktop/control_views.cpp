#include "desktop/control_views.h"

ControlView makeControlView(Control& record, QWidget& content, const Changed& changed) {
  switch (record.Kind()) {
    case ControlKind::PushButton:
    case ControlKind::BevelButton:
      return pushButtonView(static_cast<Button&>(record), content, changed);
    case ControlKind::CheckBox:
      return checkBoxView(static_cast<CheckBox&>(record), content, changed);
    case ControlKind::RadioButton:
      return radioButtonView(static_cast<RadioButton&>(record), content, changed);
    case ControlKind::Label:
      return labelView(static_cast<Label&>(record), content);
    case ControlKind::TextField:
      return textFieldView(static_cast<TextField&>(record), content, changed);
    case ControlKind::TextArea:
      return textAreaView(static_cast<TextArea&>(record), content);
    case ControlKind::Listbox:
      return listboxView(static_cast<Listbox&>(record), content);
    case ControlKind::Canvas:
      return canvasView(static_cast<Canvas&>(record), content);
    case ControlKind::Line:
      break;
  }
  return {};
}
