// The application object and all run state that outlives a command.
//
// Option flags are the strings "true" and "false". The commands read the controls of Window1; the option
// strings are the copy that the preferences keep.
#pragma once

#include <string>

#include "app/Commands.h"
#include "app/Endpoints.h"
#include "app/Progress.h"
#include "runtime/Application.h"
#include "runtime/Text.h"

class App : public Application {
 public:
  // Sets up the file types and the menu bar. One App at a time; the next may follow when it is gone.
  App(Platform& host, const Commands& commands, Endpoints endpoints = {});
  // NilObjectException if there is none.
  static App& Get() { return static_cast<App&>(Application::Current()); }

  const Commands commands;
  const Endpoints endpoints;

  std::string vidCode;                     // of the last accepted link, with whatever follows it
  std::string checkedDL = "true";          // option text in kOutputTypes; "true" while none was chosen
  std::string openDL = "true";             // open each file after saving
  std::string paragraphChecked = "false";  // text transcript in paragraph form
  std::string timecodeChecked = "false";   // line-by-line text with timecode
  std::string linebyline = "false";        // text transcript line by line
  std::string searchCount = "0";           // word search hits, in decimal digits
  std::string lastTerm;                    // of the last run of the word search; "" before the first

  Progress progress;  // of the running command, or of the last one

  // Kept from the first version; no command reads or fills them.
  StringArray timingArray;
  StringArray textArray;
  StringArray txtSizeArray;
  StringArray secondsArray;
  double movieDuration = 0;

  std::string CommandStep() const override { return progress.Step(); }

  // Before the preferences are loaded there is nothing worth saving.
  bool preferencesLoaded = false;

 protected:
  void Event_Open() override;
  void Event_Close() override;
  void Event_CommandBegins() override;
  void Event_UserAnswered(std::int64_t ticks) override { progress.begun += ticks; }
  std::string CommandOutcome(bool wasStopped) const override;

 private:
  bool _FileNewWindow_Action();
  bool _FileAboutRavelyn_Action();
  bool _FileHelp_Action();
};
