// The look of the windows: foreign text, colours, screens of high resolution, long lists.

#include <QMessageBox>
#include <QPlainTextEdit>

#include "desktop/colors.h"
#include "desktop/dialogs.h"
#include "desktop/preferences_folder.h"
#include "desktop/shown_text.h"
#include "desktop/tool_tips.h"
#include "desktop_fixture.h"

namespace {

struct ShownCase {
  std::string bytes;
  Lines lines;
  qsizetype atMost;
  QString shown;
};

QPalette darkPalette() {
  QPalette dark(QColor(0x2D, 0x2D, 0x30));
  dark.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
  return dark;
}

}  // namespace

TEST(ShownText, ControlsAndOverridesAreReplacedAndLongTextIsCut) {
  const ShownCase cases[] = {
      {"<b>fett</b> & mehr", Lines::One, 99, QStringLiteral("<b>fett</b> & mehr")},
      {"one\r\ntwo\rthree\tfour", Lines::One, 99, QStringLiteral("one two three four")},
      {"one\r\ntwo\rthree", Lines::Many, 99, QStringLiteral("one\ntwo\nthree")},
      {"bell\a nul" + std::string(1, '\0') + "\xC2\x85", Lines::One, 99,
       QStringLiteral("bell\uFFFD nul\uFFFD\uFFFD")},
      {"a\xE2\x80\xAEgpj.exe", Lines::One, 99, QStringLiteral("a\uFFFDgpj.exe")},  // an override
      {"\xE2\x80\xAB\xD7\xA9\xE2\x80\xAC\xE2\x81\xA6x", Lines::One, 99,
       QStringLiteral("\u05E9x")},  // embeddings
      {"cut \xE2", Lines::One, 99, QStringLiteral("cut \uFFFD")},
      {"\xF0\x9F\x8C\x8A wave", Lines::One, 5, QStringLiteral("\U0001F30A wa\u2026")},
      {"\xF0\x9F\x8C\x8A", Lines::One, 1, QStringLiteral("\u2026")},  // no half of a surrogate pair
  };
  for (const ShownCase& c : cases) EXPECT_EQ(shownText(c.bytes, c.lines, c.atMost), c.shown) << c.bytes;
  EXPECT_LE(shownText(std::string(1 << 24, 'x')).size(), 1001);
  EXPECT_EQ(plainToolTip(QStringLiteral("<img src=x>")), QStringLiteral("<p>&lt;img src=x&gt;</p>"));
}

TEST_F(Desktop, ForeignTextIsShownPlainAndOfLimitedLength) {
  Offer(server, "abc", {{"en", "<b>Eng</b>\xE2\x80\xAEhsil", Document({{"0", "1", "<i>x</i>"}})}});
  search(QStringLiteral("abc"));
  EXPECT_EQ(languages().model()->index(0, 0).data().toString(), QStringLiteral("<b>Eng</b>\uFFFDhsil"));
  form().Label4.SetText("<h1>" + std::string(5000, 'w') + "</h1>");
  draw();
  auto& label = widget<QLabel>(form().Label4);
  EXPECT_EQ(label.textFormat(), Qt::PlainText);
  EXPECT_TRUE(label.text().endsWith(QChar(u'\u2026')));
  EXPECT_LE(label.fontMetrics().horizontalAdvance(label.text()), label.width());
  EXPECT_TRUE(tipOf(label).startsWith(QStringLiteral("<h1>")));
  EXPECT_EQ(label.toolTip(), QString()) << "a screen reader would read it, with its markup";

  const auto box = makeMessage("<b>" + std::string(100'000, 'y') + std::string(500, '\n') + "\x1B[0m",
                               "<i>why</i>" + std::string(100'000, 'y'), nullptr);
  box->ensurePolished();
  box->show();
  EXPECT_TRUE(box->informativeText().startsWith(QStringLiteral("<i>why</i>")));
  for (const QLabel* part : box->findChildren<QLabel*>()) {
    EXPECT_TRUE(part->text().isEmpty() || part->textFormat() == Qt::PlainText);
  }
  EXPECT_LE(box->width(), QGuiApplication::primaryScreen()->availableSize().width());
  EXPECT_LE(box->height(), QGuiApplication::primaryScreen()->availableSize().height());
}

TEST_F(Desktop, TextsAndMarksAreLegibleOnLightAndDark) {
  const QPalette before = QApplication::palette();
  aboutWin::Get().Show();
  SearchWin::Get();
  for (const QPalette& palette : {QPalette(QColor(0xEF, 0xEF, 0xEF)), darkPalette()}) {
    QApplication::setPalette(palette);
    QCoreApplication::processEvents();
    draw();
    for (const auto& window : app->Windows()) {
      for (const Control* control : window->Controls()) {
        if (control->Kind() != ControlKind::Label) continue;
        const QPalette& seen = widget<QWidget>(*control).palette();
        EXPECT_GE(contrast(seen.color(QPalette::WindowText), seen.color(QPalette::Window)), 4.5)
            << window->Name() << "." << control->Name();
      }
    }
    EXPECT_GE(
        contrast(link().palette().color(QPalette::PlaceholderText), link().palette().color(QPalette::Base)),
        4.5);
    for (const Control* box :
         {static_cast<Control*>(&form().SRTBox), static_cast<Control*>(&form().openBox)}) {
      const QImage seen = widget<QWidget>(*box).grab().toImage();
      double best = 1;
      for (int x = 0; x < 8; ++x)
        best =
            std::max(best, contrast(seen.pixelColor(x, seen.height() / 2), palette.color(QPalette::Window)));
      EXPECT_GE(best, 3) << box->Name();
    }
  }
  QApplication::setPalette(before);
  EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
  EXPECT_EQ(legibleOn(Qt::white, QColor(0x3B, 0x66, 0xC7)), QColor(0x3B, 0x66, 0xC7)) << "legible as it is";
}

// The screen of this test has four pixels for a point (see main).
TEST_F(Desktop, AScreenOfHighResolutionKeepsPlacesAndDrawsFiner) {
  EXPECT_EQ(view(form()).devicePixelRatio(), 2);
  EXPECT_EQ(widget<QWidget>(form().Canvas1).geometry(), QRect(368, 279, 100, 100));
  EXPECT_EQ(widget<QWidget>(form().Label2).font().pixelSize(), 14);
  const QImage seen = view(form()).content().grab().toImage();
  ASSERT_EQ(seen.size(), QSize(562, 479) * 2);
  // A vertical line is two pixels wide, and the picture is drawn from its "@2x" version.
  const QImage picture(QStringLiteral(":/Ravelyn1001@2x.png"));
  const QPoint middle(100, 40);
  const QColor grey = legibleOn(view(form()).palette().color(QPalette::Window), QColor(0x6F, 0x75, 0x73));
  EXPECT_EQ(seen.pixelColor(614, 300), grey);
  EXPECT_EQ(seen.pixelColor(615, 300), grey);
  EXPECT_NE(seen.pixelColor(613, 300), grey);
  EXPECT_EQ(seen.pixelColor(QPoint(368, 279) * 2 + middle).rgb(), picture.pixelColor(middle).rgb());
}

TEST_F(Desktop, TheTextAreaIsFilledOnceItIsInSight) {
  auto& area = widget<QPlainTextEdit>(form().TextArea1);
  form().TextArea1.SetText("in two\nlines " + std::string(5'000'000, 'x'));
  draw();
  EXPECT_EQ(area.toPlainText().size(), 0);
  EXPECT_EQ(area.focusPolicy(), Qt::NoFocus) << "Tab skips what is out of sight";
  view(form()).resize(900, 700);
  ASSERT_TRUE(waitFor([&] { return area.toPlainText().size() > 100'000; }));
  EXPECT_TRUE(area.toPlainText().startsWith(QStringLiteral("in two\nlines\nxx")));
  EXPECT_LT(area.toPlainText().size(), 100'200);
  EXPECT_TRUE(area.isReadOnly());
  form().TextArea1.SetText("another");
  EXPECT_TRUE(waitFor([&] { return area.toPlainText() == QStringLiteral("another"); }));
}

TEST_F(Desktop, AListOfManyHitsGrowsWithoutStalling) {
  constexpr int kRows = 200'000;
  Listbox& results = SearchWin::Get().resultsList;
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(SearchWin::Get())));
  using Clock = std::chrono::steady_clock;
  Clock::duration longest{};
  app->Dispatch(nullptr, [&] {
    for (int i = 0; i < kRows; ++i) {
      results.AddRow("00:00:00.000");
      results.SetCell(i, 1, "cue " + std::to_string(i));
      const auto before = Clock::now();
      RuntimeBackgroundTask();
      longest = std::max(longest, Clock::now() - before);
    }
  });
  draw();
  ListView& list = widget<ListView>(results);
  ASSERT_EQ(list.model()->rowCount(), kRows);
  for (int step = 0; step < 100; ++step) {
    const auto before = Clock::now();
    list.scrollTo(list.model()->index(step * (kRows / 100), 0));
    list.repaint();
    longest = std::max(longest, Clock::now() - before);
  }
  const auto before = Clock::now();
  clickRow(list, kRows - kRows / 100);
  draw();
  longest = std::max(longest, Clock::now() - before);
  EXPECT_EQ(results.SelCount(), 1);
  const auto stall = std::chrono::duration_cast<std::chrono::milliseconds>(longest).count();
  std::cout << "longest stall: " << stall << " ms\n";
  EXPECT_LT(stall, 1000) << "some step goes through all rows";
}

TEST_F(Desktop, ColumnsWithoutAWidthShareTheRest) {
  Offer(server, "abc", {{"en", "English", ""}});
  search(QStringLiteral("abc"));
  EXPECT_EQ(languages().columnWidth(0), languages().viewport()->width())
      << "its own 250 points are more than the list has";
  EXPECT_TRUE(languages().isColumnHidden(1));
  SearchWin& results = SearchWin::Get();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(results)));
  results.resultsList.AddRow("00:00:00.000");
  draw();
  const ListView& list = widget<ListView>(results.resultsList);
  EXPECT_EQ(list.columnWidth(0) + list.columnWidth(1), list.viewport()->width());
  EXPECT_EQ(list.columnWidth(0), std::stoi(results.resultsList.Layout().columnWidths));
}

TEST_F(Desktop, NoLabelIsElidedOrCoversAnotherControl) {
  aboutWin::Get().Show();
  SearchWin::Get().Show();
  draw();
  for (const Window* window : {static_cast<Window*>(&form()), static_cast<Window*>(&aboutWin::Get())}) {
    for (const Control* control : window->Controls()) {
      if (control->Kind() != ControlKind::Label || static_cast<const Label*>(control)->Appearance().multiline)
        continue;
      const auto& label = widget<QLabel>(*control);
      EXPECT_EQ(label.text().toStdString(), static_cast<const Label*>(control)->Text());
      for (const Control* other : window->Controls()) {
        if (other->Left() <= control->Left() || !other->Visible() || other->Kind() == ControlKind::Line)
          continue;
        const QRect text(label.pos(),
                         QSize(label.fontMetrics().horizontalAdvance(label.text()), label.height()));
        EXPECT_TRUE(label.width() == control->Width() || !text.intersects(widget<QWidget>(*other).geometry()))
            << control->Name() << " over " << other->Name();
      }
    }
  }
}

TEST(ShownText, ARunOfEightyCharactersCanBeBroken) {
  const QString run(80, QChar(u'x')), breaks = run + QChar(0x200B) + run + QChar(0x200B) + QChar(u'y');
  EXPECT_EQ(withBreaks(run), run);
  EXPECT_EQ(withBreaks(run + run + QChar(u'y')), breaks);
  EXPECT_EQ(withBreaks(run + QChar(u' ') + run), run + QChar(u' ') + run);
}

TEST_F(Desktop, AListHasLinesBelowRowsAndBetweenColumns) {
  Listbox& results = SearchWin::Get().resultsList;
  ASSERT_TRUE(QTest::qWaitForWindowActive(&view(SearchWin::Get())));
  results.AddRow("00:00:00.000");
  draw();
  ListView& list = widget<ListView>(results);
  const QImage seen = list.viewport()->grab().toImage();
  const auto at = [&](int x, int y) { return seen.pixelColor(QPoint(x, y) * seen.devicePixelRatio()); };
  const QColor ground = list.palette().color(QPalette::Base);
  const int right = list.viewport()->width() - 5, bottom = list.viewport()->height() - 5;
  const int below = list.rowHeight(0), beside = list.columnWidth(0);
  EXPECT_NE(at(right, below - 1), ground) << "below each row";
  EXPECT_EQ(at(right, below - 2), ground);
  EXPECT_EQ(at(right, below), ground);
  for (const int thick : {1, 2}) EXPECT_NE(at(beside - thick, bottom), ground) << "between the columns";
  EXPECT_EQ(at(beside - 3, bottom), ground);
  EXPECT_EQ(at(beside, bottom), ground);
}

TEST(PreferencesFolder, FollowsTheEnvironmentAndIsMadeForTheUserAlone) {
  const TemporaryFolder home;
  const QByteArray homeBefore = qgetenv("HOME"), configBefore = qgetenv("XDG_CONFIG_HOME");
  const auto folder = [&](const char* config) {
    qputenv("HOME", home.Path().c_str());
    qputenv("XDG_CONFIG_HOME", config);
    return preferencesFolder();
  };
#ifndef __APPLE__
  EXPECT_EQ(folder(""), home / ".config");
  EXPECT_EQ(folder("relative"), home / ".config");
  EXPECT_EQ(folder((home / "a/b").c_str()), home / "a/b");
  EXPECT_EQ(std::filesystem::status(home / "a/b").permissions(), std::filesystem::perms::owner_all);
  WriteFile(home / "file", "");
  EXPECT_EQ(folder((home / "file").c_str()), "");
#endif
  qputenv("HOME", homeBefore);
  configBefore.isEmpty() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", configBefore);
}

int main(int count, char** arguments) {
  qputenv("QT_SCALE_FACTOR", "2");
  return runOffscreen(count, arguments);
}
