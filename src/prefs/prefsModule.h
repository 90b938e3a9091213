// Keeps the output choices from run to run: five lines of text, read at start and written at quit.
//
//   line 1  checkedDL         option text of a row of kOutputTypes, or "true" if none was chosen
//   line 2  openDL            lines 2 to 5 "true" or "false"
//   line 3  paragraphChecked
//   line 4  timecodeChecked
//   line 5  linebyline
#pragma once

namespace prefsModule {

// Writes the values of App, all or none; failures are ignored. Does nothing before getPrefs has run: there is
// nothing worth saving then.
void savePrefs();

// Reads the values into App and sets the controls of Window1, whose handlers run as after a click.
// Missing lines count as empty; an unknown value is kept in App as it is.
void getPrefs();

}  // namespace prefsModule
