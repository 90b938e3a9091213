// A preferences file of any bytes: the program starts with it, saves five short lines, and loads the same
// choices from them.

#include <array>

#include "prefs/prefsModule.h"
#include "runtime/Streams.h"
#include "support/Harness.h"

namespace {

std::string Path() { return fuzz::Folder() / "com.tarnvale.ravelyn.user.prefs"; }

struct Choices {
  std::array<std::string, 5> values;
  std::array<bool, 7> boxes;
  bool operator==(const Choices&) const = default;
};

// Starts with the file and quits at once, which saves it.
Choices StartAndQuit() {
  fuzz::Program program;
  prefsModule::getPrefs();
  const App& app = program.app;
  const Window1& form = program.form;
  const auto messages = program.TakeMessages();
  HOLDS(messages.size() <= 1);
  HOLDS(messages.empty() || messages.front() == "I could read preferences. Error code 1.");
  HOLDS(int{form.TextBox.Value()} + int{form.SRTBox.Value()} + int{form.WebVTTBox.Value()} <= 1);
  HOLDS(!(form.paragraphBox.Value() && form.lineBox.Value()));
  HOLDS(!form.paragraphBox.Value() || app.paragraphChecked == "true");
  HOLDS(!form.lineBox.Value() || app.linebyline == "true");
  const Choices choices{
      {app.checkedDL, app.openDL, app.paragraphChecked, app.timecodeChecked, app.linebyline},
      {form.TextBox.Value(), form.SRTBox.Value(), form.WebVTTBox.Value(), form.openBox.Value(),
       form.paragraphBox.Value(), form.timecodeBox.Value(), form.lineBox.Value()}};
  prefsModule::savePrefs();
  return choices;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  WriteFile(Path(), std::string(reinterpret_cast<const char*>(data), size));
  const Choices first = StartAndQuit();
  const std::string saved = ReadFile(Path());
  std::string expected;
  for (const std::string& value : first.values) {
    HOLDS(value.size() <= TextInputStream::kLongestLine);
    HOLDS(value.find_first_of("\r\n") == std::string::npos);
    expected += value + "\n";
  }
  HOLDS(saved == expected);
  HOLDS(fuzz::Folder().Count() == 1);
  HOLDS(StartAndQuit() == first);
  HOLDS(ReadFile(Path()) == saved);
  return 0;
}
