// Controls as data: what code sets, what a user does, and which events and changes follow.

#include <utility>

#include "form_fixture.h"
#include "runtime/exceptions.h"

namespace {

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
  form.canvas.UserClicks();
  form.canvas.UserClicksAt(3, 4);
  EXPECT_EQ(form.events, Lines({"box 1", "box 0", "one", "two", "two", "canvas 0 0", "canvas 3 4"}));
}

TEST_F(Run, ClicksOnDisabledAndHiddenControlsRaiseNothing) {
  Form& form = Form::Get();
  form.events.clear();
  form.one.SetEnabled(false);
  form.one.UserClicks();
  form.box.SetVisible(false);
  form.box.UserClicks();
  form.canvas.SetEnabled(false);
  form.canvas.UserClicksAt(5, 6);
  EXPECT_EQ(form.events, Lines());
}

TEST_F(Run, ResizingClampsTheSizeAndReportsEachNewOne) {
  Form& form = Form::Get();
  form.events.clear();
  form.UserResizes(10, 300);
  form.UserResizes(0, 300);
  form.UserResizes(99'999, 1);
  form.UserResizes(65, 99'999);
  EXPECT_EQ(form.events, Lines({"64x300", "32000x64", "65x32000"}));
}

TEST_F(Run, TextFieldsDropLineBreaksAndEditTheirSelection) {
  using namespace std::string_literals;
  TextField& field = Form::Get().field;
  field.UserTypes("one\r\ntwo\0three\n"s);
  EXPECT_EQ(field.Text(), "onetwothree");
  std::string clipboard;
  const auto edit = [&](EditAction action) { return field.UserEdits(action, clipboard), field.Text(); };
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
  const auto changesAndRevision = [&] {
    return std::to_string(std::exchange(changes, 0)) + "/" + std::to_string(list.Revision());
  };
  Fill(list);
  list.SetCell(3, 1, "last");
  EXPECT_EQ(changesAndRevision(), "5/0");
  for (const char* text : {"second", "second", ""}) list.SetCell(2, 1, text);
  list.SetCell(2, 1, "second");
  EXPECT_EQ(changesAndRevision(), "3/3");
  list.UserSelects({3, 1, 1});
  list.RemoveRow(1);
  EXPECT_EQ(changesAndRevision(), "2/5");
  EXPECT_EQ(list.Cell(1, 0) + list.Cell(1, 1) + list.Cell(2, 0) + list.Cell(2, 1), "cseconddlast");
}

TEST_F(Lists, KeepTheirSelectionWhenARowIsRemoved) {
  Fill(list);
  list.UserSelects({3, 1, 1});
  EXPECT_EQ(SelectedIn(list), "13");
  EXPECT_EQ(list.LastIndex(), 3);
  list.RemoveRow(1);
  EXPECT_EQ(SelectedIn(list), "2");
  EXPECT_EQ(list.LastIndex(), 2);
  list.RemoveRowsFrom(1);
  EXPECT_EQ(list.ListCount() + list.SelCount(), 1);
  EXPECT_EQ(list.LastIndex(), 0);
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
  for (const std::int64_t bad : {-1, 4}) {
    EXPECT_THROW(list.Cell(bad, 0), OutOfBoundsException);
    EXPECT_THROW(list.Selected(bad), OutOfBoundsException);
  }
  EXPECT_THROW(list.Cell(0, 2), OutOfBoundsException);
}

TEST_F(Lists, AClickMayCloseTheirWindow) {
  Fill(list);
  list.CellClick = [&](auto, auto, int, int) { return form.Close(), false; };
  list.UserClicksCell(0, 0);
  EXPECT_EQ(formsAlive, 0);
}

}  // namespace
