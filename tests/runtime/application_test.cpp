// The application object: handlers, commands, windows and menus.

#include <cerrno>
#include <utility>

#include "form_fixture.h"
#include "runtime/Dictionary.h"
#include "runtime/Streams.h"
#include "runtime/exceptions.h"

namespace {

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
      {[] { throw RegExSearchPatternException("odd", 1); }, "RegExSearchPatternException: odd"},
      {[] { throw IOException(ENOSPC); }, "IOException: No space left on device"},
      {[] { throw IOException(4095); }, "IOException: Unknown error 4095"},
      {[] { throw std::bad_alloc(); }, "OutOfMemoryException: There is not enough memory for this."},
      {[] { throw std::runtime_error("odd"); }, "Exception: odd"},
  };
  for (const auto& [fault, words] : rows) {
    app.Dispatch(nullptr, [&, &thrower = fault] {
      app.Dispatch(nullptr, thrower), steps.push_back("outer continues");
    });
    EXPECT_EQ(std::exchange(host.calls, {}), Lines({"message: " + words}));
    EXPECT_EQ(std::exchange(steps, {}), Lines({"outer continues"}));
  }
}

TEST_F(Run, StopActsOnceAndLeavesNoWindowAndNoFocus) {
  Form& form = Form::Get();
  form.Show();
  form.field.SetFocus();
  app.Stop();
  app.Stop();
  EXPECT_EQ(app.events, Lines({"close"}));
  EXPECT_TRUE(app.IsQuitting() && app.Windows().empty());
  EXPECT_TRUE(!app.FocusedControl() && !app.ActiveWindow());
}

TEST_F(Run, WithoutAnApplicationAMessageIsAnErrorAndAWaitIsNone) {
  { const Application other(host); }
  EXPECT_GT(Ticks(), 0);
  EXPECT_EQ(AskSavePath("", ""), std::nullopt);
  RuntimeBackgroundTask();
  app.Dispatch(nullptr, [] { MsgBox("unseen"); });
  EXPECT_EQ(host.calls, Lines({"message: NilObjectException: There is no application."}));
}

TEST_F(Run, QuittingUnwindsEveryHandlerAtItsNextYield) {
  app.Dispatch(nullptr, [&] {
    host.onYield = [&] {
      app.Dispatch(nullptr, [&] {
        app.Quit();
        steps.push_back("inner continues");
        RuntimeBackgroundTask();
        steps.push_back("unreachable");
      });
    };
    RuntimeBackgroundTask();
    steps.push_back("unreachable");
  });
  EXPECT_EQ(steps, Lines({"inner continues"}));
  EXPECT_EQ(host.calls, Lines());
}

TEST_F(Run, ClosingAWindowEndsItsOwnHandlersOnly) {
  app.Dispatch(nullptr, [&] {
    Form& form = Form::Get();
    form.button.Action = [&] {
      form.Close();
      EXPECT_EQ(app.FindWindow("Form"), nullptr) << "leaves the list at once";
      EXPECT_EQ(formsAlive, 1) << "is destroyed after the handler";
      steps.push_back(form.button.Caption());
      RuntimeBackgroundTask();
      steps.push_back("unreachable");
    };
    form.button.UserClicks();
    RuntimeBackgroundTask();
    steps.push_back("application continues");
  });
  EXPECT_EQ(steps, Lines({"Go", "application continues"}));
  EXPECT_EQ(formsAlive, 0);
  EXPECT_EQ(host.calls, Lines({"close: Form"}));
}

TEST_F(Run, PostedEventsWaitForTheHandlerThatPostedThem) {
  app.Dispatch(nullptr, [&] {
    app.Post(nullptr, [&] { steps.push_back("posted by outer"); });
    app.Dispatch(nullptr, [&] {
      app.Post(nullptr, [&] { steps.push_back("posted by inner"); });
      steps.push_back("inner");
    });
    steps.push_back("outer");
  });
  app.Post(nullptr, [&] { steps.push_back("at once"); });
  EXPECT_EQ(steps, Lines({"inner", "posted by inner", "outer", "posted by outer", "at once"}));
}

TEST_F(Run, AWindowOpensAfterTheHandlerThatMadeIt) {
  app.Dispatch(nullptr, [&] {
    Form& form = Form::Get();
    EXPECT_EQ(&Form::Get(), &form);
    EXPECT_EQ(form.events, Lines());
    form.Show();
  });
  EXPECT_EQ(Form::Get().events, Lines({"open"}));
  const int opened = formsOpened;
  app.Dispatch(nullptr, [&] {
    Form::Get().Close();
    Form::Get().Close();  // a new window, whose posted Open is dropped
    EXPECT_EQ(formsOpened, opened);
    Other::Get();
    EXPECT_EQ(formsOpened, opened + 1) << "this one opens at once";
  });
  EXPECT_EQ(host.calls, Lines({"show: Form", "close: Form", "close: Form"}));
  Form::Get().Close();  // no handler is running: destroyed at once
  EXPECT_EQ(formsAlive, 0);
}

TEST_F(Run, ASecondCommandIsIgnoredUntilTheFirstHasEnded) {
  const auto command = [&](const char* name, const Application::Handler& then) {
    app.Command(name, [&] { steps.push_back(host.running), then(); });
  };
  app.Dispatch(nullptr, [&] {
    command("first", [&] { app.Dispatch(nullptr, [&] { command("ignored", [] {}); }); });
    command("next", [] {});
    command("throws", [] { throw IOException(EIO); });
  });
  EXPECT_EQ(host.running + host.outcome, "finished");
  EXPECT_EQ(steps, Lines({"first", "next", "throws"}));
  EXPECT_EQ(app.events, Lines(3, "begins"));
}

TEST_F(Run, StoppingACommandEndsItsHandlerAlone) {
  app.Dispatch(nullptr, [&] {
    app.Dispatch(nullptr, [&] {
      app.Command("one", [&] {
        app.StopCommand();
        EXPECT_EQ(host.running + host.outcome, "stopped");
        EXPECT_TRUE(app.HasEnded(2) && !app.HasEnded(1) && !app.HasEnded(0));
        RuntimeBackgroundTask();
        steps.push_back("unreachable");
      });
    });
    RuntimeBackgroundTask();
    steps.push_back("outer continues");
  });
  EXPECT_EQ(steps, Lines({"outer continues"}));
}

TEST_F(Run, TheActiveWindowIsTheLastOneStillOpen) {
  Form& form = Form::Get();
  Other& other = Other::Get();
  form.Show();
  other.UserActivates();
  EXPECT_EQ(app.ActiveWindow(), &form) << "a hidden window is never active";
  other.Show();
  form.UserActivates();
  other.UserActivates();
  form.field.SetFocus();
  other.Close();
  EXPECT_TRUE(app.ActiveWindow() == &form && app.FocusedControl() == &form.field);
  form.Close();
  EXPECT_TRUE(!app.ActiveWindow() && !app.FocusedControl());
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
                 {"Paste", "Paste", "", EditAction::Paste}}}}};
  app.SetMenuBar(bar);
  app.AddMenuHandler("Help", [&] { return steps.push_back("app"), false; });
  Form& form = Form::Get();
  app.AddMenuHandler("Hidden", [&] { return steps.push_back("hidden"), false; });
  form.AddMenuHandler("Help", [&] { return steps.push_back("form"), false; });
  form.AddMenuHandler("Closing", [&] {
    form.Close();
    RuntimeBackgroundTask();
    return steps.push_back("unreachable"), false;
  });
  EXPECT_TRUE(app.ChooseMenuItem("Help"));
  form.Show();
  for (const char* item : {"Help", "None", "Forced", "Hidden"}) EXPECT_TRUE(app.ChooseMenuItem(item)) << item;
  EXPECT_FALSE(app.ChooseMenuItem("Line") || app.ChooseMenuItem("Nothing"));
  EXPECT_FALSE(bar.Find("None")->Enabled || bar.Find("Paste")->Enabled || bar.Find("Help")->ShowsHelp);
  app.ChooseMenuItem("Closing");
  EXPECT_EQ(steps, Lines({"app", "form"})) << "the handler of \"Closing\" ended with its window";
}

}  // namespace
