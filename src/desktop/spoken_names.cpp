#include "desktop/spoken_names.h"

#include "desktop/shown_text.h"
#include "runtime/Window.h"

namespace {

constexpr int kFarthest = 24;  // points from a label down to its control

}  // namespace

const Label* labelOf(const Control& control) {
  const Label* nearest = nullptr;
  int least = kFarthest;
  for (const Control* other : control.Owner().Controls()) {
    const int gap = control.Top() - other->Top() - other->Height();
    const bool above = other->Kind() == ControlKind::Label && other->Left() == control.Left() && gap >= 0;
    if (!above || gap >= least) continue;
    nearest = static_cast<const Label*>(other);
    least = gap;
  }
  return nearest;
}

bool hasOwnName(const Control& control) {
  return control.Kind() != ControlKind::TextField && control.Kind() != ControlKind::TextArea &&
         control.Kind() != ControlKind::Listbox && control.Kind() != ControlKind::Canvas;
}

QString spokenName(const Control& control) {
  if (!control.Appearance().spoken.empty()) return shownText(control.Appearance().spoken);
  const Label* label = labelOf(control);
  return shownText(label ? label->Text() : control.Name());
}
