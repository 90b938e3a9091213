// The main form's own handlers: the options, which keep each other and the strings of App in step, the
// connection test, and the menu items that act differently while the form is in front.

#include "app/Window1.h"

#include "app/App.h"
#include "app/aboutWin.h"
#include "app/output_types.h"
#include "runtime/Shell.h"

void Window1::UserGivesLink(const std::string& link) {
  TextField1.UserDrops(link);
  PushButton2.UserClicks();
}

void Window1::ShowTextFormBracket(bool shown) {
  for (Line* line : {&Line1, &Line2, &Line3, &Line9}) line->SetVisible(shown);
}

void Window1::ShowTimecodeBracket(bool shown) {
  for (Line* line : {&Line10, &Line11}) line->SetVisible(shown);
}

// Unchecking the box chooses no other form, so Download asks for one; App::paragraphChecked stays.
void Window1::paragraphBox_Action() {
  if (!paragraphBox.Value()) return;
  lineBox.SetValue(false);
  timecodeBox.SetValue(false);
  TextBox.SetValue(true);
  timecodeBox.SetEnabled(false);
  ShowTimecodeBracket(false);
  PushButton1.SetCaption("Download Transcript(s)");
  App& app = App::Get();
  app.paragraphChecked = "true";
  app.linebyline = app.timecodeChecked = "false";
}

void Window1::lineBox_Action() {
  App& app = App::Get();
  if (!lineBox.Value()) {
    app.linebyline = app.timecodeChecked = "false";
    return;
  }
  paragraphBox.SetValue(false);
  timecodeBox.SetEnabled(true);
  ShowTimecodeBracket(true);
  app.linebyline = "true";
  app.paragraphChecked = "false";
}

void Window1::timecodeBox_Action() { App::Get().timecodeChecked = timecodeBox.Value() ? "true" : "false"; }

void Window1::openBox_Action() { App::Get().openDL = openBox.Value() ? "true" : "false"; }

// Only the text transcript has forms to choose from.
void Window1::Choose(Output output) {
  const bool hasForms = output == Output::Text;
  for (const OutputType& other : kOutputTypes)
    if (other.output != output) (this->*other.button).SetValue(false);
  for (CheckBox* box : {&paragraphBox, &timecodeBox, &lineBox}) {
    if (!hasForms) box->SetValue(false);
    box->SetEnabled(hasForms);
  }
  ShowTextFormBracket(hasForms);
  ShowTimecodeBracket(hasForms);
  App& app = App::Get();
  const OutputType& chosen = kOutputTypes.at(static_cast<std::size_t>(output));
  PushButton1.SetCaption(chosen.caption);
  app.checkedDL = chosen.option;
  if (!hasForms) app.paragraphChecked = app.timecodeChecked = app.linebyline = "false";
}

bool Window1::Canvas1_MouseDown(int, int) { return _FileAboutRavelyn_Action(); }

// The ConnectivityProbe: one echo request, and a warning if it fails. The form stays usable while it runs.
void Window1::Event_Open() {
  Shell probe;
  probe.Mode = 2;
  probe.Execute("ping -n -q -W 5 -c 1 " + App::Get().endpoints.ProbeAddress);
  // Some systems can't report the end of a process; then it is checked every 25 milliseconds.
  const int longestWait = probe.End().descriptor < 0 ? 25 : kForever;
  do {
    App::Get().DoEvents(longestWait, probe.End());
    RuntimeBackgroundTask();
  } while (probe.IsRunning());
  if (probe.ErrorCode() != 0) {
    MsgBox(
        "Ravelyn cannot work without an Internet connection. Please check your connection prior to continuing.");
  }
}

void Window1::PushButton1_Action() { App::Get().commands.Download(*this); }
void Window1::PushButton2_Action() { App::Get().commands.Search(*this); }
void Window1::PushButton3_Action() { App::Get().commands.SearchWords(*this); }
void Window1::DownloadTrack(std::int64_t row, Output output) {
  App::Get().commands.DownloadTrack(*this, row, output);
}
bool Window1::DoWordSearch(std::int64_t row) { return App::Get().commands.SearchTrack(*this, row); }
std::string Window1::SecsToTimecode(double seconds) const {
  return App::Get().commands.SecsToTimecode(seconds);
}
std::string Window1::returnTimecodeSRT(double seconds) const {
  return App::Get().commands.returnTimecodeSRT(seconds);
}
std::string Window1::timecodeToSecs(const std::string& timecode) const {
  return App::Get().commands.timecodeToSecs(timecode);
}

void Window1::AddMenuHandlers() {
  AddMenuHandler("FileAboutRavelyn", [this] { return _FileAboutRavelyn_Action(); });
  AddMenuHandler("FileNewWindow", [this] { return _FileNewWindow_Action(); });
  AddMenuHandler("FileHelp", [this] { return _FileHelp_Action(); });
}

bool Window1::_FileAboutRavelyn_Action() {
  aboutWin::Get().Show();
  return false;
}

bool Window1::_FileNewWindow_Action() {
  Window1::Get().Show();
  return false;
}

bool Window1::_FileHelp_Action() {
  ShowURL("http://" + App::Get().endpoints.ProductPage);
  return false;
}
