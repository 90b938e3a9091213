// The main form: paste a link and search, choose languages, choose a file type and its options, download, or
// search the words. Its controls are declared in construction order.
//
// Option handlers are defined in this room; commands are called through App::commands.
#pragma once

#include "runtime/Buttons.h"
#include "runtime/Listbox.h"
#include "runtime/TextControls.h"
#include "runtime/Window.h"

// The kinds of file that Download writes (see app/output_types.h).
enum class Output { Text, SRT, VTT };

class Window1 : public Window {
 public:
  Window1();
  // Creates the form, hidden, at the first call and again after it was closed. Its Open event, with the
  // probe, is raised when the handler that created it has returned.
  static Window1& Get() { return GetOrMake<Window1>(kName, Opening::AfterHandler); }
  static Window1* OpenOrNil() { return static_cast<Window1*>(Find(kName)); }
  static constexpr char kName[] = "Window1";

  PushButton PushButton1{*this};
  Label Label1{*this}, Label2{*this};
  TextField TextField1{*this};  // the link
  PushButton PushButton2{*this};
  Listbox XMLList{*this, {.columns = 1}};  // scratch of Search
  TextArea TextArea1{*this};               // scratch of all commands
  // The caption tracks: language name, language code. They are stored nowhere else.
  Listbox Listbox1{*this,
                   {.columns = 2,
                    .columnWidths = "250",
                    .gridHorizontal = 2,
                    .gridVertical = 3,
                    .severalSelectable = true,
                    .headings = {"Language"}}};
  CheckBox paragraphBox{*this};
  Label Label3{*this};
  CheckBox lineBox{*this};
  Label Label4{*this}, Label6{*this};
  CheckBox timecodeBox{*this};
  Canvas Canvas1{*this};
  CheckBox openBox{*this};
  RadioButton TextBox{*this}, SRTBox{*this};
  Listbox listBox2{*this, {.columns = 4}};  // unused
  TextField searchField{*this};             // the term
  PushButton PushButton3{*this};
  Label Label7{*this};
  RadioButton WebVTTBox{*this};
  Line Line1{*this}, Line2{*this}, Line3{*this}, Line4{*this}, Line5{*this}, Line6{*this}, Line7{*this},
      Line8{*this}, Line9{*this}, Line10{*this}, Line11{*this};

  bool urlLoaded = false;  // kept from the first version; unused

  // The user starts the program with a link or drops one on the form: puts it into its field and searches.
  void UserGivesLink(const std::string& link);

  void PushButton1_Action();  // Download
  void PushButton2_Action();  // Search
  void paragraphBox_Action();
  void lineBox_Action();
  void timecodeBox_Action();
  bool Canvas1_MouseDown(int x, int y);
  void openBox_Action();
  void TextBox_Action() { Choose(Output::Text); }
  void SRTBox_Action() { Choose(Output::SRT); }
  void PushButton3_Action();  // Word Search
  void WebVTTBox_Action() { Choose(Output::VTT); }
  void AddMenuHandlers();

  // Each handles one row of Listbox1, counted from 0 (see Commands).
  void getTranscriptions(std::int64_t row) { DownloadTrack(row, Output::Text); }
  void DoSRT(std::int64_t row) { DownloadTrack(row, Output::SRT); }
  void DoVTT(std::int64_t row) { DownloadTrack(row, Output::VTT); }
  bool DoWordSearch(std::int64_t row);

  std::string SecsToTimecode(double seconds) const;
  std::string returnTimecodeSRT(double seconds) const;
  std::string timecodeToSecs(const std::string& timecode) const;

 protected:
  void Event_Open() override;

 private:
  bool _FileAboutRavelyn_Action();
  bool _FileNewWindow_Action();
  bool _FileHelp_Action();
  void BindActions();
  void Choose(Output output);
  void DownloadTrack(std::int64_t row, Output output);
  void ShowTextFormBracket(bool shown);
  void ShowTimecodeBracket(bool shown);
};
