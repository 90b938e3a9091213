#include "Printer.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "app/App.h"
#include "runtime/Buttons.h"
#include "runtime/Listbox.h"
#include "runtime/TextControls.h"
#include "runtime/Window.h"

namespace {

// Keeps keys in the order in which they were added.
using Json = nlohmann::ordered_json;

Json RowsOf(const Listbox& list) {
  Json rows = Json::array();
  for (std::int64_t row = 0; row < list.ListCount(); ++row) {
    Json cells = Json::array();
    for (std::int64_t column = 0; column < list.Columns(); ++column) cells.push_back(list.Cell(row, column));
    rows.push_back(std::move(cells));
  }
  return rows;
}

Json SelectedOf(const Listbox& list) {
  Json selected = Json::array();
  for (std::int64_t row = 0; row < list.ListCount(); ++row) {
    if (list.Selected(row)) selected.push_back(row);
  }
  return selected;
}

Json PlaceOf(const Control& c) {
  if (c.Kind() != ControlKind::Line) {
    return {{"left", c.Left()}, {"top", c.Top()}, {"width", c.Width()}, {"height", c.Height()}};
  }
  const auto& line = static_cast<const Line&>(c);
  return {{"x1", line.X1()}, {"y1", line.Y1()}, {"x2", line.X2()}, {"y2", line.Y2()}};
}

void AddOwnValues(Json& json, const Control& c) {
  switch (c.Kind()) {
    case ControlKind::Label:
      json["text"] = static_cast<const Label&>(c).Text();
      break;
    case ControlKind::TextField:
      json["text"] = static_cast<const TextField&>(c).Text();
      break;
    case ControlKind::TextArea:
      json["text"] = static_cast<const TextArea&>(c).Text();
      break;
    case ControlKind::PushButton:
    case ControlKind::BevelButton:
      json["caption"] = static_cast<const Button&>(c).Caption();
      break;
    case ControlKind::CheckBox:
      json["caption"] = static_cast<const CheckBox&>(c).Caption();
      json["value"] = static_cast<const CheckBox&>(c).Value();
      break;
    case ControlKind::RadioButton:
      json["caption"] = static_cast<const RadioButton&>(c).Caption();
      json["value"] = static_cast<const RadioButton&>(c).Value();
      break;
    case ControlKind::Listbox:
      json["rows"] = RowsOf(static_cast<const Listbox&>(c));
      json["selected"] = SelectedOf(static_cast<const Listbox&>(c));
      break;
    case ControlKind::Canvas:
      json["backdrop"] = static_cast<const Canvas&>(c).Backdrop();
      break;
    case ControlKind::Line:
      break;
  }
}

Json WindowState(const Window& window) {
  Json controls = Json::object();
  for (const Control* control : window.Controls()) {
    Json json = PlaceOf(*control);
    json["enabled"] = control->Enabled();
    json["visible"] = control->Visible();
    AddOwnValues(json, *control);
    controls[control->Name()] = std::move(json);
  }
  return {{"title", window.Frame().title},
          {"visible", window.Visible()},
          {"width", window.Width()},
          {"height", window.Height()},
          {"controls", controls}};
}

Json AppState(const App& app) {
  return {{"vidCode", app.vidCode},
          {"checkedDL", app.checkedDL},
          {"openDL", app.openDL},
          {"paragraphChecked", app.paragraphChecked},
          {"timecodeChecked", app.timecodeChecked},
          {"linebyline", app.linebyline},
          {"searchCount", app.searchCount},
          {"timingArray", app.timingArray},
          {"textArray", app.textArray},
          {"txtSizeArray", app.txtSizeArray},
          {"secondsArray", app.secondsArray},
          {"movieDuration", app.movieDuration}};
}

void PrintLine(std::ostream& out, const Json& object) {
  out << object.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

Json StateOf(const App& app) {
  Json windows = Json::object();
  for (const auto& window : app.Windows()) windows[window->Name()] = WindowState(*window);
  const Window* active = app.ActiveWindow();
  const Control* focus = app.FocusedControl();
  return {{"event", "state"},
          {"app", AppState(app)},
          {"active", active ? Json(active->Name()) : Json(nullptr)},
          {"focus", focus ? Json(focus->Owner().Name() + "." + focus->Name()) : Json(nullptr)},
          {"windows", std::move(windows)}};
}

}  // namespace

void Printer::Message(const std::string& text, const std::string& cause) {
  Json message = {{"event", "message"}, {"text", text}};
  if (!cause.empty()) message["cause"] = cause;
  PrintLine(out_, message);
}

void Printer::Save(const std::string& filter, const std::string& name,
                   const std::optional<std::string>& path) {
  PrintLine(
      out_,
      {{"event", "save"}, {"filter", filter}, {"name", name}, {"path", path ? Json(*path) : Json(nullptr)}});
}

void Printer::Launch(const std::string& path) { PrintLine(out_, {{"event", "launch"}, {"path", path}}); }

void Printer::Browse(const std::string& address) {
  PrintLine(out_, {{"event", "browse"}, {"address", address}});
}

void Printer::Outcome(const std::string& text) { PrintLine(out_, {{"event", "outcome"}, {"text", text}}); }

void Printer::Focus(const std::string& control) {
  PrintLine(out_, {{"event", "focus"}, {"control", control}});
}

void Printer::Show(const std::string& window) { PrintLine(out_, {{"event", "show"}, {"window", window}}); }

void Printer::Close(const std::string& window) { PrintLine(out_, {{"event", "close"}, {"window", window}}); }

void Printer::State(const App& app) { PrintLine(out_, StateOf(app)); }

void Printer::Done(const std::string& action) {
  PrintLine(out_, {{"event", "done"}, {"action", action}});
  out_.flush();
}

void Printer::Error(std::int64_t line, const std::string& text) {
  PrintLine(out_, {{"event", "error"}, {"line", line}, {"text", text}});
  out_.flush();
}
