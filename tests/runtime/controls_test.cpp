// Controls as data: what code sets, what a user does, and which events and changes follow.

#include <utility>

#include "form_fixture.h"
#include "runtime/exceptions.h"

namespace {

using namespace std::string_literals;

TEST_F(Run, ClicksAndAssignmentsRaiseTheSameEvents) {
  Form& form = Form::Get();
  form.events.clear();
  form.box.SetValue(true);
  form.box.SetValue(true);
  form.box.UserClicks();
  form.one.SetValue(true);
  form.two.UserClicks();
  form.two.UserClicks();
  EXPECT_FALSE(form.one.Value());
  form.two.SetValue(true);
  form.two.SetValue(false);
  EXPECT_FALSE(form.two.Value() || form.box.Value());
  EXPECT_TRUE(form.canvas.UserClicks() && form.canvas.UserClicksAt(3, 4) && form.button.UserClicks());
  EXPECT_FALSE(form.label.UserClicks());
  EXPECT_EQ(form.events, Lines({"box 1", "box 0", "one", "two", "two", "canvas 0 0", "canvas 3 4"}));
}

TEST_F(Run, ANewValueIsReportedOnce) {
  Form& form = Form::Get();
  Lines changed;
  form.OnChange = [&](Control& control) { changed.push_back(control.Name()); };
  for (int i = 0; i < 2; ++i) {
    form.button.SetCaption("new");
    form.field.SetText("new");
    form.area.SetText("new");
    form.label.SetLeft(7);
  }
  EXPECT_EQ(changed, Lines({"button", "field", "area", "label"}));
  EXPECT_EQ(form.button.Caption() + form.field.Text() + form.area.Text(), "newnewnew");
}

TEST_F(Run, ActionsOnDisabledAndHiddenControlsDoNothing) {
  Form& form = Form::Get();
  form.events.clear();
  for (Control* control : form.Controls()) control->SetEnabled(false);
  form.box.SetEnabled(true);
  form.box.SetVisible(false);
  EXPECT_TRUE(form.one.UserClicks() && form.box.UserClicks() && form.canvas.UserClicksAt(5, 6));
  form.field.UserTypes("typed");
  EXPECT_EQ(form.events, Lines());
  EXPECT_EQ(form.field.Text(), "start");
}

TEST_F(Run, ResizingClampsTheSizeAndReportsEachNewOne) {
  Form& form = Form::Get();
  form.events.clear();
  for (const auto& [width, height] : {std::pair(10, 300), {0, 300}, {99'999, 300}, {99'999, 1}, {65, 99'999}})
    form.UserResizes(width, height);
  EXPECT_EQ(form.events, Lines({"64x300", "32000x300", "32000x64", "65x32000"}));
}

TEST_F(Run, TextFieldsDropLineBreaksAndEditTheirSelection) {
  TextField& field = Form::Get().field;
  field.UserTypes("one\r\ntwo\0three\n"s);
  std::string clipboard;
  // The text and the selection afterwards.
  const auto edit = [&](EditAction action) {
    field.UserEdits(action, clipboard);
    return field.Text() + " " + std::to_string(field.SelStart) + "+" + std::to_string(field.SelLength);
  };
  field.SelStart = 3, field.SelLength = 3;
  EXPECT_EQ(edit(EditAction::Cut) + " " + clipboard, "onethree 3+0 two");
  EXPECT_EQ(edit(EditAction::Undo), "onetwothree 11+0");
  EXPECT_EQ(edit(EditAction::Copy) + " " + clipboard, "onetwothree 11+0 two") << "nothing selected";
  EXPECT_EQ(edit(EditAction::SelectAll), "onetwothree 0+11");
  EXPECT_EQ(app.FocusedControl(), &field);
}

struct Lists : Run {
  Form& form = Form::Get();
  Listbox& list = form.list;

  void Fill(Listbox& box) {
    for (const char* text : {"a", "b", "c", "d"}) box.AddRow(text);
  }
  // The selected rows, such as "13".
  static std::string SelectedIn(const Listbox& box) {
    std::string rows;
    for (std::int64_t row = 0; row < box.ListCount(); ++row)
      rows += box.Selected(row) ? std::to_string(row) : "";
    EXPECT_EQ(box.SelCount(), static_cast<std::int64_t>(rows.size()));
    return rows;
  }
};

TEST_F(Lists, ReportEveryChangeAndRaiseTheRevisionExceptAtTheEnd) {
  int changes = 0;
  form.OnChange = [&](Control&) { ++changes; };
  // The changes and the revision, then the selected rows.
  const auto state = [&] {
    return std::to_string(changes) + "/" + std::to_string(list.Revision()) + " " + SelectedIn(list);
  };
  Fill(list);
  list.SetCell(3, 1, "last");
  EXPECT_EQ(state(), "5/0 ");
  for (const char* text : {"second", "second", "gone"}) list.SetCell(1, 1, text);
  list.UserSelects({3, 1, 1});
  EXPECT_EQ(state(), "8/3 13");
  list.RemoveRow(1);
  EXPECT_EQ(state() + list.Cell(1, 0) + list.Cell(1, 1) + list.Cell(2, 0) + list.Cell(2, 1), "9/4 2cdlast");
  for (const std::int64_t row : {2, 2, -1}) list.RemoveRowsFrom(row);
  list.AddRow("e");
  EXPECT_EQ(state() + list.Cell(2, 0) + list.Cell(2, 1), "11/5 e");
  list.RemoveRowsFrom(0);
  EXPECT_EQ(list.LastIndex(), -1);
}

TEST_F(Lists, SelectOneRowUnlessSeveralAreAllowed) {
  Fill(form.single);
  form.single.UserSelects({2, 0});
  EXPECT_EQ(SelectedIn(form.single), "2");
}

TEST_F(Lists, AClickSelectsItsRowUnlessItIsHandled) {
  Fill(list);
  list.UserSelects({2});
  Lines clicked;
  list.CellClick = [&](std::int64_t row, std::int64_t column, int x, int y) {
    clicked.push_back(std::to_string(row * 1000 + column * 100 + x * 10 + y));
    return row == 0;
  };
  list.UserClicksCell(0, 0);
  EXPECT_EQ(SelectedIn(list), "2") << "handled";
  list.UserClicksCell(1, 1, 2, 3);
  EXPECT_EQ(SelectedIn(list), "1");
  list.SetEnabled(false);
  list.UserSelects({0, 2});
  list.UserClicksCell(2, 0);
  EXPECT_EQ(SelectedIn(list), "1") << "disabled";
  EXPECT_EQ(clicked, Lines({"0", "1123"}));
}

TEST_F(Lists, AnAbsentRowOrColumnRaisesAndChangesNothing) {
  Fill(list);
  list.UserSelects({2});
  EXPECT_THROW(list.UserSelects({0, 4}), OutOfBoundsException);
  EXPECT_EQ(SelectedIn(list), "2");
  for (const auto& [row, column] : {std::pair(-1, 0), {4, 0}, {0, 2}, {0, -1}})
    EXPECT_THROW(list.Cell(row, column), OutOfBoundsException);
  EXPECT_THROW(list.Selected(4), OutOfBoundsException);
  Fill(form.single);
  EXPECT_THROW(form.single.Cell(0, 1), OutOfBoundsException) << "one column, if no number is given";
  EXPECT_THROW(list.UserClicksCell(4, 0), OutOfBoundsException);
}

TEST_F(Lists, AClickMayRemoveItsRowOrCloseTheWindow) {
  Fill(list);
  list.CellClick = [&](auto row, auto, int, int) { return list.RemoveRow(row), false; };
  list.UserClicksCell(3, 0);
  EXPECT_EQ(SelectedIn(list), "");
  list.CellClick = [&](auto, auto, int, int) { return form.Close(), false; };
  list.UserClicksCell(0, 0);
  EXPECT_EQ(formsAlive, 0);
  EXPECT_EQ(host.calls, Lines({"close: Form"})) << "without a message";
}

}  // namespace
