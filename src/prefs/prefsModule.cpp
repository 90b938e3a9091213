#include "prefs/prefsModule.h"

#include "app/App.h"
#include "app/output_types.h"
#include "runtime/Streams.h"
#include "runtime/exceptions.h"

namespace {

constexpr char kFileName[] = "com.tarnvale.ravelyn.user.prefs";

FolderItemPtr PrefsFile() {
  const FolderItemPtr folder = SpecialFolder::Preferences();
  return folder ? folder->Child(kFileName) : nullptr;
}

void ApplyFormat(Window1& form, const std::string& format) {
  for (const OutputType& type : kOutputTypes) {
    if (format.empty() || format == type.option) (form.*type.button).SetValue(!format.empty());
  }
}

void ApplyOpening(Window1& form, const std::string& open) {
  const bool isOn = open.empty() || open == "true";
  if (!isOn && open != "false") return MsgBox("I could read preferences. Error code 1.");
  form.openBox.SetValue(isOn);
}

}  // namespace

void prefsModule::savePrefs() {
  const App& app = App::Get();
  if (!app.preferencesLoaded) return;
  const FolderItemPtr file = PrefsFile();
  if (!file) return;
  const auto out = file->CreateTextFile();
  if (!out) return;
  try {
    for (const std::string* value :
         {&app.checkedDL, &app.openDL, &app.paragraphChecked, &app.timecodeChecked, &app.linebyline}) {
      out->WriteLine(*value);
    }
    out->Close();
  } catch (const IOException&) {
    // The old file is unchanged, and at quit no message can be shown.
  }
}

void prefsModule::getPrefs() {
  App& app = App::Get();
  app.preferencesLoaded = true;
  const FolderItemPtr file = PrefsFile();
  if (!file || !file->Exists()) return;
  const auto in = file->OpenAsTextFile();
  if (!in) return MsgBox("I could not read preferences. Error code 2.");
  Window1& form = Window1::Get();
  app.checkedDL = in->ReadLine();
  ApplyFormat(form, app.checkedDL);
  app.openDL = in->ReadLine();
  ApplyOpening(form, app.openDL);
  app.paragraphChecked = in->ReadLine();
  app.timecodeChecked = in->ReadLine();
  app.linebyline = in->ReadLine();
  // The handler of a box changes the strings of the others: the first that is on wins.
  form.paragraphBox.SetValue(app.paragraphChecked == "true");
  form.timecodeBox.SetValue(app.timecodeChecked == "true");
  form.lineBox.SetValue(app.linebyline == "true");
}
