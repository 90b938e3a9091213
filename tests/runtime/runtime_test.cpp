// The application object, windows and controls as data, and the shell.

#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

#include "runtime/Application.h"
#include "runtime/Buttons.h"
#include "runtime/Dictionary.h"
#include "runtime/Listbox.h"
#include "runtime/Random.h"
#include "runtime/Shell.h"
#include "runtime/Streams.h"
#include "runtime/TextControls.h"
#include "runtime/Window.h"
#include "runtime/exceptions.h"
#include "support/FakePlatform.h"
#include "support/processes.h"
#include "support/rows.h"

namespace {

using Lines = std::vector<std::string>;

int formsAlive = 0, formsOpened = 0;

// A window of each kind of control.
class Form : public Window {
 public:
  Form() : Window(Application::Current(), "Form", {"A form", 200, 100}) {
    Place({{button, "button", 1, 2, 3, 4, 0, "Go"},
           {box, "box", 0, 0, 1, 1},
           {one, "one", 0, 0, 1, 1},
           {two, "two", 0, 0, 1, 1},
           {field, "field", 0, 0, 1, 1, 1, "start"},
           {list, "list", 0, 0, 1, 1},
           {single, "single", 0, 0, 1, 1}});
    box.Action = [this] { reported.push_back("box " + std::to_string(box.Value())); };
    one.Action = [this] { reported.push_back("one"); };
    two.Action = [this] { reported.push_back("two"); };
    canvas.MouseDown = [this](int x, int y) {
      return reported.push_back("canvas " + std::to_string(x) + " " + std::to_string(y)), true;
    };
    ++formsAlive;
  }
  ~Form() override { --formsAlive; }
  static Form& Get() { return GetOrMake<Form>("Form", Opening::AfterHandler); }
  using Window::AddMenuHandler;
  void Event_Open() override {
    reported.push_back("open");
    ++formsOpened;
  }
  void Event_Resizing() override {
    reported.push_back(std::to_string(Width()) + "x" + std::to_string(Height()));
  }

  Lines reported;
  PushButton button{*this};
  CheckBox box{*this};
  RadioButton one{*this}, two{*this};
  TextField field{*this};
  Listbox list{*this, {2, "", 0, 0, true}};
  Listbox single{*this, {}};
  Canvas canvas{*this};
};

class Other : public Window {
 public:
  Other() : Window(Application::Current(), "Other", {}) {}
  static Other& Get() { return GetOrMake<Other>("Other", Opening::AtOnce); }
};

struct Run : testing::Test {
  FakePlatform host;
  Application app{host};
  Lines reported;
};

TEST_F(Run, AnExceptionEndsItsHandlerAndIsShown) {
  using namespace std::string_literals;
  const Dictionary dictionary({{"key"s, "value"s}});
  const MemoryBlock block(2);
  const std::pair<std::function<void()>, std::string> rows[] = {
      {[] { Form::Get().list.Cell(7, 0); }, "OutOfBoundsException: list has no cell in row 7, column 0."},
      {[&] { dictionary.Key(1); }, "OutOfBoundsException: The dictionary has no key at that index."},
      {[&] { dictionary.Value(std::int64_t{5}); }, "OutOfBoundsException: The dictionary has no key 5."},
      {[&] { block.Byte(2); }, "OutOfBoundsException: The block has no byte there."},
      {[&] { block.StringValue(1, 2); }, "OutOfBoundsException: The block has no such run of bytes."},
      {[] { TextOutputStream::Create(nullptr); }, "NilObjectException: There is no file to write to."},
      {[] { BinaryStream::Create(nullptr, true); }, "NilObjectException: There is no file to write to."},
      {[] { static_cast<void>(std::vector<int>().at(3)); },
       "OutOfBoundsException: An index was outside its array."},
      {[] { throw IOException(ENOSPC); }, "IOException: No space left on device"},
      {[] { throw IOException(4095); }, "IOException: Unknown error 4095"},
      {[] { throw std::bad_alloc(); }, "OutOfMemoryException: There is not enough memory for this."},
      {[] { throw std::runtime_error("odd"); }, "Exception: odd"},
  };
  for (const auto& [fault, words] : rows) {
    app.Dispatch(nullptr,
                 [&, &thrower = fault] { app.Dispatch(nullptr, thrower), reported.push_back("goes on"); });
    EXPECT_EQ(std::exchange(host.calls, {}), Lines({"message: " + words}));
    EXPECT_EQ(std::exchange(reported, {}), Lines({"goes on"})) << "the outer one";
  }
}

TEST_F(Run, EndsOnceAndLeavesNothing) {
  struct Ending : Application {
    using Application::Application;
    void Event_Close() override { ++closed; }
    int closed = 0;
  } ending(host);
  Form& form = Form::Get();
  form.Show();
  form.field.SetFocus();
  EXPECT_EQ(host.calls, Lines({"show: Form", "focus: field"}));
  EXPECT_EQ(ending.FocusedControl(), &form.field);
  ending.Stop();
  ending.Stop();
  EXPECT_EQ(ending.closed, 1);
  EXPECT_TRUE(ending.IsQuitting() && ending.Windows().empty());
  EXPECT_TRUE(!ending.FocusedControl() && !ending.ActiveWindow());
}

TEST_F(Run, QuittingUnwindsEveryHandlerAtItsNextYield) {
  app.Dispatch(nullptr, [&] {
    const std::shared_ptr<void> guard(nullptr, [&](void*) { reported.push_back("outer unwound"); });
    host.onYield = [&] {
      app.Dispatch(nullptr, [&] {
        app.Quit();
        reported.push_back("inner goes on");
        RuntimeBackgroundTask();
        reported.push_back("never");
      });
    };
    RuntimeBackgroundTask();
    reported.push_back("never");
  });
  EXPECT_EQ(reported, Lines({"inner goes on", "outer unwound"}));
  EXPECT_EQ(host.calls, Lines());
  EXPECT_TRUE(app.IsQuitting());
}

TEST_F(Run, ClosingAWindowEndsItsOwnHandlersOnly) {
  app.Dispatch(nullptr, [&] {
    Form& form = Form::Get();
    form.button.Action = [&] {
      form.Close();
      EXPECT_EQ(app.FindWindow("Form"), nullptr) << "it leaves the list at once";
      EXPECT_EQ(formsAlive, 1) << "and lives until the handler has returned";
      reported.push_back(form.button.Caption());
      RuntimeBackgroundTask();
      reported.push_back("never");
    };
    form.button.PersonClicks();
    RuntimeBackgroundTask();
    reported.push_back("the application's goes on");
  });
  EXPECT_EQ(reported, Lines({"Go", "the application's goes on"}));
  EXPECT_EQ(formsAlive, 0);
  EXPECT_EQ(host.calls, Lines({"close: Form"}));
}

TEST_F(Run, AClickMayCloseTheListsWindow) {
  Form& form = Form::Get();
  form.list.AddRow("row");
  form.list.CellClick = [&](auto, auto, int, int) { return form.Close(), false; };
  form.list.PersonClicksCell(0, 0);
  EXPECT_EQ(formsAlive, 0);
}

TEST_F(Run, PostedEventsWaitForTheHandlerThatPostedThem) {
  app.Dispatch(nullptr, [&] {
    app.Post(nullptr, [&] { reported.push_back("posted by outer"); });
    app.Dispatch(nullptr, [&] {
      app.Post(nullptr, [&] { reported.push_back("posted by inner"); });
      reported.push_back("inner");
    });
    reported.push_back("outer");
  });
  app.Post(nullptr, [&] { reported.push_back("at once"); });
  EXPECT_EQ(reported, Lines({"inner", "posted by inner", "outer", "posted by outer", "at once"}));
}

TEST_F(Run, AWindowOpensAfterTheHandlerThatMadeIt) {
  app.Dispatch(nullptr, [&] {
    Form& form = Form::Get();
    EXPECT_EQ(&Form::Get(), &form);
    EXPECT_EQ(form.reported, Lines());
    form.Show();
  });
  EXPECT_EQ(Form::Get().reported, Lines({"open"}));
  const int opened = formsOpened;
  app.Dispatch(nullptr, [&] {
    Form::Get().Close();
    Form::Get().Close();  // a new one, whose posted Open goes with it
  });
  EXPECT_EQ(formsOpened, opened);
  EXPECT_EQ(host.calls, Lines({"show: Form", "close: Form", "close: Form"}));
  EXPECT_EQ(formsAlive, 0);
  Form::Get().Close();  // no handler runs, so that it goes at once
  EXPECT_EQ(formsAlive, 0);
}

TEST_F(Run, ASecondCommandIsIgnoredUntilTheFirstHasEnded) {
  const auto command = [&](const char* name, const Application::Handler& then) {
    app.Dispatch(nullptr, [&] { app.Command(name, [&] { reported.push_back(name), then(); }); });
  };
  command("first", [&] { command("ignored", [] {}); });
  command("throws", [] { throw IOException(EIO); });
  EXPECT_FALSE(app.IsCommandRunning());
  command("next", [&] { EXPECT_EQ(host.running, "next"); });
  EXPECT_EQ(host.running, "");
  EXPECT_EQ(reported, Lines({"first", "throws", "next"}));
}

TEST_F(Run, ACommandThatWasEndedIsOverAtOnce) {
  Form& form = Form::Get();
  for (Window* owner : {static_cast<Window*>(&form), static_cast<Window*>(nullptr)}) {
    reported.clear();
    app.Dispatch(owner, [&] {
      app.Command("ended", [&] {
        app.EndHandlerWith("Other");
        Other::Get().Close();
        EXPECT_EQ(host.running, "");
        app.Dispatch(nullptr, [&] {
          app.Command("next", [&] { reported.push_back(host.running), RuntimeBackgroundTask(); });
        });
        reported.push_back(app.IsCommandRunning() ? "still" : "over");
        RuntimeBackgroundTask();
        reported.push_back("never");
      });
    });
    EXPECT_EQ(reported, Lines({"next", "over"}));
  }
}

TEST_F(Run, TheActiveWindowIsTheLastOneStillOpen) {
  Form& form = Form::Get();
  Other& other = Other::Get();
  EXPECT_EQ(app.ActiveWindow(), nullptr);
  form.Show();
  other.PersonActivates();
  EXPECT_EQ(app.ActiveWindow(), &form) << "a hidden window is never the active one";
  other.Show();
  form.PersonActivates();
  other.PersonActivates();
  other.Close();
  EXPECT_EQ(app.ActiveWindow(), &form);
  form.Close();
  EXPECT_EQ(app.ActiveWindow(), nullptr);
}

TEST_F(Run, AMenuChoiceRunsOneHandler) {
  MenuBar bar{{{"M",
                "M",
                {{"Help", "Help"},
                 {"None", "None"},
                 {"Forced", "Forced", "", {}, false, true, false, true},
                 {"Hidden", "Hidden", "", {}, false, false},
                 {"Closing", "Closing"},
                 {"Line", "-"},
                 {"Paste", "Paste", "", EditAction::Paste},
                 QuitMenuItem("Quit", "Quit", "")}}}};
  app.SetMenuBar(bar);
  app.AddMenuHandler("Help", [&] { return reported.push_back("app"), false; });
  Form& form = Form::Get();
  app.AddMenuHandler("Hidden", [&] { return reported.push_back("hidden"), false; });
  form.AddMenuHandler("Help", [&] { return reported.push_back("form"), false; });
  form.AddMenuHandler("Closing", [&] {
    form.Close();
    RuntimeBackgroundTask();
    return reported.push_back("never"), false;
  });
  EXPECT_TRUE(app.ChooseMenuItem("Help"));
  form.Show();
  for (const char* item : {"Help", "None", "Forced", "Hidden"}) EXPECT_TRUE(app.ChooseMenuItem(item)) << item;
  EXPECT_FALSE(app.ChooseMenuItem("Line") || app.ChooseMenuItem("Nothing"));
  EXPECT_FALSE(bar.Find("None")->Enabled || bar.Find("Paste")->Enabled);
  form.field.SetFocus();
  host.clipboard = "a\nb";
  app.ChooseMenuItem("Paste");
  EXPECT_EQ(form.field.Text(), "abstart");
  app.ChooseMenuItem("Closing");
  EXPECT_EQ(reported, Lines({"app", "form"})) << "the last one went with its window";
  app.ChooseMenuItem("Quit");
  EXPECT_TRUE(app.IsQuitting());
}

TEST_F(Run, CodeAndPersonTakeTheSameRoad) {
  Form& form = Form::Get();
  form.reported.clear();
  form.box.SetValue(true);
  form.box.SetValue(true);
  form.box.PersonClicks();
  form.one.SetValue(true);
  form.two.PersonClicks();
  form.two.PersonClicks();
  EXPECT_FALSE(form.one.Value());
  form.two.SetValue(true);
  form.two.SetValue(false);
  form.one.SetEnabled(false);
  form.one.PersonClicks();
  form.box.SetVisible(false);
  form.box.PersonClicks();
  form.PersonResizes(10, 300);
  form.PersonResizes(0, 300);
  form.PersonResizes(99'999, 1);
  form.PersonResizes(65, 99'999);
  form.canvas.PersonClicks();
  form.canvas.PersonClicksAt(3, 4);
  form.canvas.SetEnabled(false);
  form.canvas.PersonClicksAt(5, 6);
  EXPECT_EQ(form.reported, Lines({"box 1", "box 0", "one", "two", "two", "64x300", "32000x64", "65x32000",
                                  "canvas 0 0", "canvas 3 4"}));
}

TEST_F(Run, TextFieldsHoldOneLineAndAreEdited) {
  using namespace std::string_literals;
  TextField& field = Form::Get().field;
  field.PersonTypes("one\r\ntwo\0three\n"s);
  EXPECT_EQ(field.Text(), "onetwothree");
  std::string clipboard;
  const auto edit = [&](EditAction action) { return field.PersonEdits(action, clipboard), field.Text(); };
  field.SelStart = 3, field.SelLength = 3;
  EXPECT_EQ(edit(EditAction::Cut) + "|" + clipboard, "onethree|two");
  EXPECT_EQ(edit(EditAction::Undo), "onetwothree");
  EXPECT_EQ(edit(EditAction::Paste), "onetwothreetwo");
  EXPECT_EQ(field.SelStart, 14u);
  edit(EditAction::SelectAll);
  EXPECT_EQ(edit(EditAction::Copy), clipboard);
  EXPECT_EQ(edit(EditAction::Clear), "");
  EXPECT_EQ(edit(EditAction::Copy) + clipboard, "onetwothreetwo") << "nothing selected, nothing copied";
  EXPECT_EQ(app.FocusedControl(), &field);
}

TEST_F(Run, ListsKeepRowsCellsAndSelection) {
  Listbox& list = Form::Get().list;
  int changes = 0;
  Form::Get().OnChange = [&](Control&) { ++changes; };
  const auto news = [&] {  // changes, and how often more than the end of the list is new
    return std::to_string(std::exchange(changes, 0)) + "/" + std::to_string(list.Revision());
  };
  for (const char* text : {"a", "b", "c", "d"}) list.AddRow(text);
  list.SetCell(3, 1, "last");
  EXPECT_EQ(news(), "5/0");
  for (const char* text : {"second", "second", ""}) list.SetCell(2, 1, text);
  list.SetCell(2, 1, "second");
  EXPECT_EQ(news(), "3/3");
  list.PersonSelects({3, 1, 1});
  EXPECT_EQ(list.SelCount(), 2);
  EXPECT_EQ(list.LastIndex(), 3);
  list.RemoveRow(1);
  EXPECT_EQ(news(), "2/5");
  EXPECT_EQ(list.LastIndex(), 2);
  list.SetCell(2, 1, "");
  EXPECT_EQ(list.SelCount(), 1);
  EXPECT_EQ(list.Cell(1, 0) + list.Cell(1, 1) + list.Cell(2, 0) + list.Cell(2, 1), "csecondd");
  EXPECT_TRUE(list.Selected(2) && !list.Selected(1));
  EXPECT_THROW(list.PersonSelects({0, 3}), OutOfBoundsException);
  EXPECT_TRUE(list.Selected(2)) << "a wrong row changes nothing";
  Lines clicked;
  list.CellClick = [&](std::int64_t row, std::int64_t column, int x, int y) {
    clicked.push_back(std::to_string(row * 1000 + column * 100 + x * 10 + y));
    return row == 0;
  };
  list.PersonClicksCell(0, 0);
  EXPECT_TRUE(list.Selected(2)) << "dealt with";
  list.PersonClicksCell(1, 1, 2, 3);
  EXPECT_EQ(clicked, Lines({"0", "1123"}));
  EXPECT_TRUE(list.Selected(1) && list.SelCount() == 1);
  for (const std::int64_t bad : {-1, 3}) EXPECT_THROW(list.Cell(bad, 0), OutOfBoundsException);
  EXPECT_THROW(list.Cell(0, 2), OutOfBoundsException);
  list.SetEnabled(false);
  list.PersonSelects({0, 2});
  list.PersonClicksCell(2, 0);
  EXPECT_TRUE(list.Selected(1) && list.SelCount() == 1) << "disabled";
  list.RemoveRowsFrom(0);
  EXPECT_EQ(list.ListCount() + list.SelCount(), 0);

  Listbox& single = Form::Get().single;
  for (const char* text : {"a", "b", "c"}) single.AddRow(text);
  single.PersonSelects({2, 0});
  EXPECT_TRUE(single.Selected(2) && !single.Selected(0));
  EXPECT_EQ(single.SelCount(), 1);
}

TEST(Shell, WaitsAndTellsTheStatus) {
  Shell shell;
  for (const auto& row : Rows("0~true|7~exit 7|137~kill -9 $$|127~no-such-command-here|0~|0~set -e; for i in "
                              "0 1 2; do [ $(readlink /proc/$$/fd/$i) = /dev/null ]; done")) {
    shell.Execute(row[1]);
    EXPECT_EQ(std::to_string(shell.ErrorCode()), row[0]) << row[1];
    EXPECT_FALSE(shell.IsRunning());
  }
  shell.TimeOut = 50;
  shell.Execute("sleep 600");
  EXPECT_EQ(shell.ErrorCode(), 137);
}

TEST(Shell, TheInteractiveModeReturnsAtOnceAndEndsWithItsChildren) {
  NamedProcess child;
  {
    Shell shell;
    shell.Mode = 2;
    shell.Execute("sleep 600 & echo $! > '" + child.Path() + "'; wait");
    EXPECT_TRUE(shell.IsRunning());
    child.Await();
    EXPECT_FALSE(child.EndsWithin(0));
  }
  EXPECT_TRUE(child.EndsWithin(30'000));
  Shell quick;
  quick.Mode = 2;
  quick.Execute("exit 3");
  EXPECT_TRUE(IsReadyWithin(30'000, quick.End()));
  EXPECT_FALSE(quick.IsRunning());
  EXPECT_EQ(quick.ErrorCode(), 3);
  quick.Execute("sleep 600");
  EXPECT_EQ(quick.ErrorCode(), 0) << "not that of the command before";
}

TEST(Random, IsSeededAnewEachTime) {
  Random first, second;
  EXPECT_NE(first.InRange(0, INT64_MAX), second.InRange(0, INT64_MAX));
}

}  // namespace
