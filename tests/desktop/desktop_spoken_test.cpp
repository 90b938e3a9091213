// What a screen reader reads of the windows, and what it can do. tests/spoken checks the same from outside,
// with a real one's interface.

#include <QAccessible>
#include <QShortcut>

#include "desktop_fixture.h"

namespace {

QAccessibleInterface& spoken(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }

std::string nameOf(const QAccessibleInterface& node) { return node.text(QAccessible::Name).toStdString(); }

// The names of everything that has this relation to node.
std::string related(const QAccessibleInterface& node, QAccessible::Relation relation) {
  std::string names;
  for (const auto& [other, kind] : node.relations(relation)) {
    if (kind == relation) names += nameOf(*other);
  }
  return names;
}

constexpr char kFirst[] = "1. Paste in YouTube URL and click Search:";
constexpr char kSecond[] = "2. Choose an available language:";
constexpr char kThird[] = "3. Choose type of file to download:";
constexpr char kTerm[] = "Search for a word or phrase in this video:";

}  // namespace

TEST_F(Desktop, ControlsHaveSpokenNamesRolesGroupsAndLabels) {
  aboutWin::Get().Show();
  SearchWin::Get().searchTerm.SetText("for \"R&D\"");
  draw();
  const struct {
    const Control& control;
    const char* name;
    QAccessible::Role role;
    const char* group;
    const char* label;
  } cases[] = {
      {form().TextField1, kFirst, QAccessible::EditableText, kFirst, kFirst},
      {form().PushButton2, "Search", QAccessible::Button, kFirst, ""},
      {form().Listbox1, kSecond, QAccessible::Table, kSecond, kSecond},
      {form().SRTBox, "SRT File", QAccessible::RadioButton, kThird, ""},
      {form().paragraphBox, "Paragraph Form", QAccessible::CheckBox, kThird, ""},
      {form().PushButton1, "Download", QAccessible::Button, kThird, ""},
      {form().Label3, kThird, QAccessible::StaticText, kThird, ""},
      {form().searchField, kTerm, QAccessible::EditableText, "", kTerm},
      {form().Canvas1, "About Ravelyn", QAccessible::Button, "", ""},
      {form().TextArea1, "Document of the last command", QAccessible::EditableText, "", ""},
      {SearchWin::Get().resultsList, "for \"R&D\"", QAccessible::Table, "", ""},
      {aboutWin::Get().BevelButton1, "Close", QAccessible::Button, "", ""},
      {aboutWin::Get().Canvas1, "Ravelyn", QAccessible::StaticText, "", ""},
  };
  for (const auto& c : cases) {
    const QAccessibleInterface& node = spoken(widget<QWidget>(c.control));
    EXPECT_EQ(nameOf(node), c.name);
    EXPECT_EQ(node.role(), c.role) << c.name;
    EXPECT_EQ(related(node, QAccessible::Label), c.label) << c.name;
    EXPECT_EQ(nameOf(*node.parent()), c.group) << c.name;
    EXPECT_EQ(node.parent()->role(), *c.group ? QAccessible::Grouping : QAccessible::Client) << c.name;
  }
  EXPECT_EQ(related(spoken(widget<QWidget>(form().Label7)), QAccessible::Labelled), kTerm);
  EXPECT_TRUE(view(SearchWin::Get()).findChildren<QShortcut*>().isEmpty()) << "\"&\" is no access key";
}

TEST_F(Desktop, EveryWindowHasARoleAndEveryControlAName) {
  aboutWin::Get().Show();
  draw();
  EXPECT_EQ(spoken(view(form())).role(), QAccessible::Window);
  EXPECT_EQ(spoken(view(aboutWin::Get())).role(), QAccessible::Dialog);
  EXPECT_EQ(link().placeholderText(), QStringLiteral("https://www.youtube.com/watch?v=hB7rV2kQx0w"));
  for (const Control* control : form().Controls()) {
    if (control->Kind() == ControlKind::Line) continue;
    EXPECT_FALSE(widget<QWidget>(*control).accessibleName().isEmpty()) << control->Name();
  }
}

// A group covers the controls of other groups, and those of none.
TEST_F(Desktop, AClickOnAControlReachesItThroughAllGroups) {
  form().TextBox.UserClicks();
  draw();
  QWidget& content = view(form()).content();
  for (const Control* control : form().Controls()) {
    const bool seen =
        control->Visible() && control->Kind() != ControlKind::Line && control != &form().TextArea1;
    if (!seen) continue;
    const QRect place = widget<QWidget>(*control).geometry();
    QWidget* at = content.childAt(place.center());
    while (at && !view(form()).controlOf(at)) at = at->parentWidget();
    EXPECT_EQ(at, &widget<QWidget>(*control)) << control->Name();
  }
  EXPECT_EQ(content.childAt(20, 20), nullptr);
  form().SRTBox.SetVisible(false);
  draw();
  EXPECT_EQ(content.childAt(widget<QWidget>(form().SRTBox).geometry().center()), nullptr);
}

TEST_F(Desktop, AListIsSpokenWithHeadingsAndWithoutRowNumbers) {
  Listbox& results = SearchWin::Get().resultsList;
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(SearchWin::Get())));
  for (const char* time : {"00:00:01.500", "00:00:02.500"}) {
    results.AddRow(time);
    results.SetCell(results.LastIndex(), 1, std::string("at ") + time);
  }
  draw();
  QAccessibleInterface& list = spoken(widget<QWidget>(results));
  std::vector<std::string> names;
  for (int i = 0; i < list.childCount(); ++i) {
    names.push_back(nameOf(*list.child(i)));
    EXPECT_EQ(list.indexOfChild(list.child(i)), i);
  }
  EXPECT_EQ(list.indexOfChild(&list), -1);
  EXPECT_EQ(names, (std::vector<std::string>{"Time", "Text", "00:00:01.500", "at 00:00:01.500",
                                             "00:00:02.500", "at 00:00:02.500"}));
  QAccessibleInterface& hit = *list.tableInterface()->cellAt(1, 1);
  EXPECT_EQ(nameOf(*hit.tableCellInterface()->columnHeaderCells().first()), "Text");
  const QString press = QAccessibleActionInterface::pressAction();
  EXPECT_EQ(hit.actionInterface()->localizedActionDescription(press), QStringLiteral("Open in Browser"));
  hit.actionInterface()->doAction(press);
  EXPECT_TRUE(waitFor([&] { return !host.calls.empty(); }));
  EXPECT_EQ(host.calls, std::vector<std::string>{"open: https://www.youtube.com/watch?v=&t=2"});
  const QPoint middle = hit.rect().center();
  EXPECT_EQ(list.childAt(middle.x(), middle.y()), &hit);
  EXPECT_EQ(list.focusChild(), list.tableInterface()->cellAt(1, 1));
  results.RemoveRow(0);
  draw();
  EXPECT_EQ(nameOf(*list.tableInterface()->cellAt(0, 1)), "at 00:00:02.500");
  EXPECT_EQ(list.childCount(), 4);
}

TEST_F(Desktop, AScreenReaderSelectsLanguages) {
  for (const char* row : {"English", "German", "French"}) form().Listbox1.AddRow(row);
  draw();
  QAccessibleInterface& list = spoken(languages());
  EXPECT_EQ(list.childCount(), 4) << "a hidden column is not spoken";
  EXPECT_TRUE(list.tableInterface()->selectRow(2));
  const QString toggle = QAccessibleActionInterface::toggleAction();
  QAccessibleInterface& first = *list.tableInterface()->cellAt(0, 0);
  EXPECT_EQ(first.actionInterface()->actionNames(), QStringList{toggle})
      << "a click does no more than select";
  first.actionInterface()->doAction(toggle);
  EXPECT_TRUE(first.state().selected);
  EXPECT_EQ(list.tableInterface()->selectedRows().size(), 2);
  EXPECT_TRUE(form().Listbox1.Selected(0));
  EXPECT_TRUE(form().Listbox1.Selected(2));
  first.actionInterface()->doAction(toggle);
  EXPECT_EQ(form().Listbox1.SelCount(), 1);
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
