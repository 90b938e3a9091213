// The look of the windows: foreign text, colours, screens of high resolution, long lists.

#include <QPainter>
#include <QPlainTextEdit>
#include <map>

#include "desktop/colors.h"
#include "desktop/fitting.h"
#include "desktop/pictures.h"
#include "desktop/preferences_folder.h"
#include "desktop/shown_text.h"
#include "desktop/tool_tips.h"
#include "desktop_fixture.h"

TEST(ShownText, ControlsAndOverridesAreReplacedAndLongTextIsCut) {
  const struct {
    std::string bytes;
    Lines lines;
    qsizetype atMost;
    QString shown;
  } cases[] = {
      {"<b>fett</b> & mehr", Lines::One, 99, QStringLiteral("<b>fett</b> & mehr")},
      {"one\r\ntwo\rthree\tfour", Lines::One, 99, QStringLiteral("one two three four")},
      {"one\r\ntwo\rthree", Lines::Many, 99, QStringLiteral("one\ntwo\nthree")},
      {"nul" + std::string(1, '\0'), Lines::One, 99, QStringLiteral("nul\uFFFD")},
      {"cut \xE2", Lines::One, 99, QStringLiteral("cut \uFFFD")},
      {"\xF0\x9F\x8C\x8A wave", Lines::One, 5, QStringLiteral("\U0001F30A wa\u2026")},
      {"\xF0\x9F\x8C\x8A", Lines::One, 1, QStringLiteral("\u2026")},  // no half of a surrogate pair
  };
  for (const auto& c : cases) EXPECT_EQ(shownText(c.bytes, c.lines, c.atMost), c.shown) << c.bytes;
  const QString most(1000, QChar(u'x'));
  EXPECT_EQ(shownText(std::string(1000, 'x')), most);
  EXPECT_EQ(shownText(std::string(1 << 24, 'x')), most + QChar(u'\u2026'));
  const QString marks = QChar(u'x') + QString(100, QChar(u'\u200E'));
  EXPECT_EQ(shownText(marks.toStdString(), Lines::One, 72), QStringLiteral("x\u2026"))
      << "the rest was not read";
  EXPECT_EQ(plainToolTip(QStringLiteral("<img src=x>\n2")), QStringLiteral("<p>&lt;img src=x&gt;<br>2</p>"));
}

TEST(ShownText, EachCharacterIsShownReplacedOrLeftOut) {
  std::map<std::string, std::string> ranges;  // of all code points with the same outcome
  std::string last;
  for (char16_t c = 1; c < 0xFFFD; ++c) {
    if (QChar::isSurrogate(c)) continue;
    const QString given = QChar(u'x') + QString(QChar(c));
    const QString shown = shownText(given.toStdString(), Lines::Many);
    const std::string outcome = shown == given ? "shown" : shown.mid(1).toStdString();
    if (outcome != last) ranges[last = outcome] += QStringLiteral("%1 ").arg(int{c}, 0, 16).toStdString();
  }
  EXPECT_EQ(ranges["shown"], "a 20 a0 61d 2010 202f 206a ff00 ");
  EXPECT_EQ(ranges[""], "61c 200e 202a 2066 ");
  EXPECT_EQ(ranges["\uFFFD"], "1 b e 7f 2028 202d feff ");
}

TEST_F(Desktop, ForeignTextIsShownPlainAndOfLimitedLength) {
  form().Listbox1.AddRow("<b>Eng</b>\u202Ehsil");
  form().Label4.SetText("<h1>" + std::string(20'000, 'w') + "</h1>");
  draw();
  EXPECT_EQ(languages().model()->index(0, 0).data().toString(), QStringLiteral("<b>Eng</b>\uFFFDhsil"));
  auto& label = widget<QLabel>(form().Label4);
  const QString whole = QStringLiteral("<h1>") + QString(9'996, QChar(u'w')) + QChar(u'\u2026');
  EXPECT_EQ(label.text(), label.fontMetrics().elidedText(whole, Qt::ElideRight, freeWidth(form().Label4)));
  EXPECT_EQ(tipOf(label), whole);
  EXPECT_EQ(label.accessibleName(), whole);
  EXPECT_EQ(label.toolTip(), QString()) << "a screen reader would read it, with its markup";
}

TEST_F(Desktop, TextsAndMarksAreLegibleOnLightAndDark) {
  const QPalette before = QApplication::palette(), light(QColor(0xEF, 0xEF, 0xEF));
  QPalette dark(QColor(0x2D, 0x2D, 0x30));
  dark.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
  aboutWin::Get().Show();
  SearchWin::Get();
  const QSize size = view(form()).size() + QSize(100, 50);
  view(form()).resize(size);
  for (const QPalette& palette : {light, dark}) {
    QApplication::setPalette(palette);
    QCoreApplication::processEvents();
    draw();
    for (const auto& window : app->Windows()) {
      for (const auto* label : view(*window).findChildren<QLabel*>()) {
        const QPalette& seen = label->palette();
        EXPECT_GE(contrast(seen.color(QPalette::WindowText), seen.color(QPalette::Window)), 4.5)
            << label->text().toStdString();
      }
    }
    const QPalette& field = link().palette();
    EXPECT_GE(contrast(field.color(QPalette::PlaceholderText), field.color(QPalette::Base)), 4.5);
    for (const Control* box :
         {static_cast<Control*>(&form().SRTBox), static_cast<Control*>(&form().openBox)}) {
      const QImage seen = widget<QWidget>(*box).grab().toImage();
      double best = 1;
      for (int x = 0; x < 8; ++x)
        best =
            std::max(best, contrast(seen.pixelColor(x, seen.height() / 2), palette.color(QPalette::Window)));
      EXPECT_GE(best, 3) << box->Name();
    }
    EXPECT_EQ(view(form()).size(), size);
  }
  QApplication::setPalette(before);
}

TEST(Colors, AreChangedAsLittleAsTheirContrastNeeds) {
  EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
  EXPECT_NEAR(contrast(QColor(10, 11, 12), Qt::black), 1.066084, 0.000001);
  const QColor blue(0x3B, 0x66, 0xC7), dark(0x2D, 0x2D, 0x30);
  EXPECT_EQ(legibleOn(Qt::white, blue), blue) << "legible as it is";
  EXPECT_EQ(legibleOn(dark, blue).name().toStdString(), "#7694d8");
  EXPECT_EQ(legibleOn(Qt::white, Qt::yellow).name().toStdString(), "#7a7a00");
  EXPECT_EQ(legibleOn(QColor(0x77, 0x77, 0x77), blue, 21).name(), QStringLiteral("#000000"))
      << "as far as possible";
  EXPECT_EQ(mutedOn(Qt::white, Qt::black).name().toStdString(), "#757575");
  EXPECT_EQ(mutedOn(Qt::white, Qt::black, kDiscernible).name().toStdString(), "#7f7f7f");
}

TEST(Pictures, AreDrawnFromTheFirstTimeOn) {
  QImage image(8, 8, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  drawPicture(painter, image.rect(), "icon-128.png");
  EXPECT_NE(image.pixelColor(4, 4).alpha(), 0);
}

// The screen of this test has four pixels for a point (see main).
TEST_F(Desktop, AScreenOfHighResolutionKeepsPlacesAndDrawsFiner) {
  EXPECT_EQ(widget<QWidget>(form().Canvas1).geometry(), QRect(368, 279, 100, 100));
  EXPECT_EQ(programIcon().availableSizes().size(), 5);
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
  view(form()).resize(900, 700);
  const QString line = QString(1000, QChar(u'x')) + QChar(u'\n');
  const QString all =
      QStringLiteral("in two\nlines\n") + line.repeated(99) + QString(987, QChar(u'x')) + QChar(u'\u2026');
  ASSERT_TRUE(waitFor([&] { return area.toPlainText() == all; })) << area.toPlainText().size();
  EXPECT_EQ(area.focusPolicy(), Qt::StrongFocus);
  const std::string a(600, 'a'), b(399, 'b'), c(700, 'c');
  for (const auto& [text, shown] : {std::pair(a + " " + b, a + " " + b),
                                    {a + " " + b + "b", a + "\n" + b + "b"},
                                    {a + "\n" + b + " " + c, a + "\n" + b + "\n" + c},
                                    {" " + a + a, " " + a + a.substr(201) + "\n" + a.substr(399)},
                                    {a + " " + c + " " + c, a + "\n" + c + "\n" + c}}) {
    form().TextArea1.SetText(text);
    draw();
    EXPECT_EQ(area.toPlainText().toStdString(), shown);
  }
}

TEST_F(Desktop, AListOfManyHitsGrowsWithoutStalling) {
  constexpr int kRows = 200'000;
  ListView& list = showResults({});
  Listbox& results = SearchWin::Get().resultsList;
  using Clock = std::chrono::steady_clock;
  Clock::duration longest{};
  const auto measured = [&longest](const std::function<void()>& step) {
    const auto before = Clock::now();
    step();
    longest = std::max(longest, Clock::now() - before);
  };
  host.deliveries = 0;
  app->Dispatch(nullptr, [&] {
    for (int i = 0; i < kRows; ++i) {
      results.AddRow("00:00:00.000");
      results.SetCell(i, 1, "cue " + std::to_string(i));
      measured(RuntimeBackgroundTask);
    }
  });
  EXPECT_LT(host.deliveries, kRows / 100) << "events are delivered once per frame, not once per call";
  draw();
  for (int row = 0; row < kRows; row += kRows / 100) {
    list.scrollTo(list.model()->index(row, 0));
    measured([&] { list.repaint(); });
  }
  measured([&] { clickRow(list, kRows - kRows / 100), draw(); });
  EXPECT_EQ(results.SelCount(), 1);
  EXPECT_LT(longest, std::chrono::seconds(1)) << "some step goes through all rows";
}

TEST(ShownText, ARunOfEightyCharactersCanBeBroken) {
  const QString run(80, QChar(u'x')), breaks = run + QChar(0x200B) + run + QChar(0x200B) + QChar(u'y');
  EXPECT_EQ(withBreaks(run), run);
  EXPECT_EQ(withBreaks(run + run + QChar(u'y')), breaks);
  EXPECT_EQ(withBreaks(run + QChar(u' ') + run), run + QChar(u' ') + run);
}

TEST(PreferencesFolder, FollowsTheEnvironmentAndIsMadeForTheUserAlone) {
  const TemporaryFolder home;
  const auto folder = [&](const char* config) {
    qputenv("HOME", home.Path().c_str());
    qputenv("XDG_CONFIG_HOME", config);
    return preferencesFolder();
  };
  EXPECT_EQ(folder(""), home / ".config");
  EXPECT_EQ(folder("relative"), home / ".config");
  EXPECT_EQ(folder((home / "a/b").c_str()), home / "a/b");
  EXPECT_EQ(std::filesystem::status(home / "a/b").permissions(), std::filesystem::perms::owner_all);
  WriteFile(home / "file", "");
  EXPECT_EQ(folder((home / "file").c_str()), "");
}

int main(int count, char** arguments) {
  qputenv("QT_SCALE_FACTOR", "2");
  return runOffscreen(count, arguments);
}
