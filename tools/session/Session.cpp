#include "Session.h"

#include <algorithm>
#include <istream>
#include <iterator>
#include <stdexcept>

#include "app/Window1.h"
#include "ravelyn/commands.h"
#include "runtime/Numbers.h"
#include "wordsearch/SearchWin.h"

namespace {

// An action that can't be done; what() is the text of the "error" event.
struct CannotDo : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The text before the first blank; rest keeps what follows that blank.
std::string TakeWord(std::string& rest) {
  std::string word = NthField(rest, " ", 1);
  rest = Mid(rest, Len(word) + 2);
  return word;
}

std::int64_t TakeNumber(std::string& rest) {
  const std::string word = TakeWord(rest);
  const std::int64_t number = ToInteger(Val(word));
  if (word.empty() || Str(number) != word) throw CannotDo("\"" + word + "\" is no number");
  return number;
}

std::vector<std::int64_t> TakeNumbers(std::string rest) {
  std::vector<std::int64_t> numbers;
  while (!Trim(rest).empty()) {
    rest = Trim(rest);
    numbers.push_back(TakeNumber(rest));
  }
  return numbers;
}

Control& ControlOf(const Window& window, const std::string& name) {
  Control* control = window.FindControl(name);
  if (!control) throw CannotDo(window.Name() + " has no control " + name);
  return *control;
}

bool TakesClicks(const Control& control) {
  constexpr ControlKind kClicked[] = {ControlKind::PushButton, ControlKind::BevelButton,
                                      ControlKind::CheckBox, ControlKind::RadioButton, ControlKind::Canvas};
  return std::find(std::begin(kClicked), std::end(kClicked), control.Kind()) != std::end(kClicked);
}

void CheckRow(const Listbox& list, std::int64_t row) {
  if (row < 0 || row >= list.ListCount()) throw CannotDo(list.Name() + " has no row " + Str(row));
}

}  // namespace

Session::Session(Endpoints endpoints, std::string prefsFolder, std::ostream& out)
    : endpoints_(std::move(endpoints)), printer_(out), platform_(printer_, std::move(prefsFolder)) {}

Session::~Session() = default;

void Session::Run(std::istream& in) {
  std::string line;
  for (std::int64_t number = 1; std::getline(in, line); ++number) {
    if (line.ends_with('\r')) line.pop_back();
    if (Trim(line).empty() || line.starts_with('#')) continue;
    try {
      Act(line);
      printer_.Done(line);
    } catch (const CannotDo& e) {
      hadErrors_ = true;
      printer_.Error(number, e.what());
    }
  }
}

void Session::Act(const std::string& line) {
  std::string rest = line;
  const std::string word = TakeWord(rest);
  if (word == "open") return Open();
  if (!app_) throw CannotDo("nothing is open yet");
  if (stopped_) throw CannotDo("the program has quit");
  if (word == "quit") return Quit();
  if (word == "type") return TakeField(rest).UserTypes(rest);
  if (word == "paste") return TakeField(rest).UserDrops(rest);
  if (word == "click") return Click(rest);
  if (word == "select") return Select(rest);
  if (word == "save") return QueueSave(rest);
  if (word == "cancel") return platform_.QueueSave(std::nullopt);
  if (word == "cell") return ClickCell(rest);
  if (word == "menu") return Choose(rest);
  if (word == "activate") return Activate(rest);
  if (word == "close") return CloseWindow(rest);
  if (word == "resize") return Resize(rest);
  if (word == "dump") return Dump();
  throw CannotDo("unknown action \"" + word + "\"");
}

void Session::Open() {
  if (app_) throw CannotDo("the program was opened before");
  app_ = std::make_unique<App>(platform_, kCommands, endpoints_);
  app_->Start();
}

void Session::Quit() {
  stopped_ = true;
  app_->Stop();
}

Window& Session::OpenWindow(const std::string& name) const {
  Window* window = app_->FindWindow(name);
  if (!window) throw CannotDo("no window " + name + " is open");
  return *window;
}

TextField& Session::TakeField(std::string& rest) const {
  Control& control = ControlOf(OpenWindow("Window1"), TakeWord(rest));
  if (control.Kind() != ControlKind::TextField) throw CannotDo(control.Name() + " is no text field");
  return static_cast<TextField&>(control);
}

// A click brings its window to the front only if it does something.
void Session::Click(const std::string& target) {
  const std::size_t dot = target.find('.');
  const bool named = dot != std::string::npos;
  Control& control = ControlOf(OpenWindow(named ? target.substr(0, dot) : "Window1"),
                               named ? target.substr(dot + 1) : target);
  if (!TakesClicks(control)) throw CannotDo(control.Name() + " takes no clicks");
  if (!control.Enabled() || !control.Visible()) return;
  control.Owner().UserActivates();
  control.UserClicks();
}

void Session::Select(const std::string& rows) {
  auto& list = static_cast<Listbox&>(ControlOf(OpenWindow("Window1"), "Listbox1"));
  const auto numbers = TakeNumbers(rows);
  for (const std::int64_t row : numbers) CheckRow(list, row);
  list.UserSelects(numbers);
}

void Session::QueueSave(const std::string& path) {
  if (path.empty()) throw CannotDo("save takes a path");
  platform_.QueueSave(path);
}

void Session::ClickCell(const std::string& text) {
  auto& list = static_cast<Listbox&>(ControlOf(OpenWindow(SearchWin::kName), "resultsList"));
  const auto numbers = TakeNumbers(text);
  if (numbers.size() != 2) throw CannotDo("cell takes a row and a column");
  CheckRow(list, numbers[0]);
  if (numbers[1] < 0 || numbers[1] >= list.Columns()) throw CannotDo("there is no column " + Str(numbers[1]));
  list.Owner().UserActivates();
  list.UserClicksCell(numbers[0], numbers[1]);
}

void Session::Choose(const std::string& item) {
  if (!app_->ChooseMenuItem(item)) throw CannotDo("there is no menu item " + item);
  if (app_->IsQuitting()) Quit();
}

void Session::Activate(const std::string& window) { OpenWindow(window).UserActivates(); }

void Session::CloseWindow(const std::string& window) { OpenWindow(window).UserCloses(); }

void Session::Resize(const std::string& text) {
  std::string rest = text;
  Window& window = OpenWindow(TakeWord(rest));
  const auto numbers = TakeNumbers(rest);
  if (numbers.size() != 2) throw CannotDo("resize takes a width and a height");
  const auto size = [](std::int64_t points) {
    return static_cast<int>(std::min<std::int64_t>(std::max<std::int64_t>(points, 0), 100000));
  };
  window.UserResizes(size(numbers[0]), size(numbers[1]));
}

void Session::Dump() { printer_.State(*app_); }
