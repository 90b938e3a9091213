// Every window in the fonts that a desktop may have: no text of the program is cut, elided, or over another.

#include <QAbstractButton>
#include <QFontDatabase>
#include <QScreen>
#include <QStyle>

#include "desktop/fitting.h"
#include "desktop/scale.h"
#include "desktop/shown_text.h"
#include "desktop_fixture.h"

namespace {

using Drawn = std::pair<std::string, QRect>;  // a control, and where its text is

QString textOf(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return label->text();
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  return button ? button->text() : QString();
}

// The width of the mark in front of the text.
int markWidth(const QWidget& widget, ControlKind kind) {
  const auto of = [&](QStyle::PixelMetric metric) { return widget.style()->pixelMetric(metric); };
  if (kind == ControlKind::CheckBox)
    return of(QStyle::PM_IndicatorWidth) + of(QStyle::PM_CheckBoxLabelSpacing);
  if (kind == ControlKind::RadioButton)
    return of(QStyle::PM_ExclusiveIndicatorWidth) + of(QStyle::PM_RadioButtonLabelSpacing);
  return 0;
}

}  // namespace

class Sizes : public Desktop {
 protected:
  void expectWhole(const Window& window, const std::string& at) {
    std::vector<Drawn> drawn;
    for (const Control* control : window.Controls()) {
      const QWidget* widget = view(window).widgetOf(*control);
      if (!widget || !control->Visible()) continue;
      const QString text = textOf(*widget);
      if (!text.isEmpty()) drawn.push_back(expectFits(*control, *widget, text, at));
    }
    for (const auto& [name, place] : drawn) {
      for (const auto& [other, its] : drawn)
        EXPECT_FALSE(name != other && place.intersects(its)) << name << " over " << other;
    }
  }
  Drawn expectFits(const Control& control, const QWidget& widget, const QString& text,
                   const std::string& at) {
    const auto* label = dynamic_cast<const Label*>(&control);
    const bool lines = control.Appearance().multiline;
    const std::string whole = label ? label->Text() : static_cast<const Button&>(control).Caption();
    const std::string name = at + control.Owner().Name() + "." + control.Name();
    EXPECT_TRUE(widget.isVisible()) << name;
    EXPECT_EQ(text, shownText(whole, lines ? Lines::Many : Lines::One)) << name;
    const int mark = markWidth(widget, control.Kind());
    const QSize available = widget.size() - QSize(mark, 0);
    const QFontMetrics metrics(widget.font());
    QRect place = metrics.boundingRect({0, 0, lines ? available.width() : 9999, 9999},
                                       lines ? Qt::TextWordWrap : Qt::TextSingleLine, text);
    if (!lines) place.setHeight(metrics.tightBoundingRect(text).height());
    EXPECT_EQ(place.size().boundedTo(available), place.size()) << name;
    place.moveCenter(widget.geometry().center());
    const bool centred = widget.inherits("QPushButton") || control.Appearance().align == Align::Center;
    const bool rightToLeft = widget.layoutDirection() == Qt::RightToLeft;
    if (!centred && !rightToLeft) place.moveLeft(widget.x() + mark);
    if (!centred && rightToLeft) place.moveRight(widget.geometry().right() - mark);
    if (lines) place.moveTop(widget.y());
    return {name, place};
  }
};

TEST_F(Sizes, NoTextIsCutAtAnyFontAndSize) {
  const QFont before = QApplication::font();
  aboutWin::Get().Show();
  SearchWin& results = SearchWin::Get();
  results.resultsList.AddRow("10:00:00.000");
  for (const char* family : {"DejaVu Sans", "Noto Sans", "Cantarell", "WenQuanYi Micro Hei"}) {
    ASSERT_TRUE(QFontDatabase::families().contains(QString::fromLatin1(family))) << family;
    for (const int points : {9, 10, 11, 12, 14, 18}) {
      for (const int dpi : {96, 120, 144}) {
        QFont font(QString::fromLatin1(family));
        font.setPointSizeF(points * dpi / 96.0);  // on a screen of 96 dpi
        QApplication::setFont(font);
        QCoreApplication::processEvents();
        draw();
        for (const auto& window : app->Windows()) {
          expectWhole(*window, font.toString().toStdString() + " ");
          const QSize screen = view(*window).screen()->availableGeometry().size();
          EXPECT_EQ(view(*window).size().boundedTo(screen), view(*window).size()) << "it fits the screen";
        }
        const ListView& list = widget<ListView>(results.resultsList);
        const int time = list.fontMetrics().horizontalAdvance(QStringLiteral("10:00:00.000"));
        EXPECT_EQ(list.columnWidth(0), std::max(scaled(100), time + 12));
      }
    }
  }
  EXPECT_EQ(QApplication::focusWidget(), QApplication::activeWindow()->focusWidget());
  form().searchField.SetFocus();
  EXPECT_FALSE(widget<QWidget>(form().searchField).visibleRegion().isEmpty()) << "scrolled into sight";
  const int width = results.Width();
  for (const int wider : {200, -200})
    view(results).resize(view(results).width() + wider, view(results).height());
  EXPECT_EQ(results.Width(), width) << "also with scroll bars, the window shrinks again";
  QApplication::setFont(before);
}

TEST_F(Sizes, ATextThatIsTooWideGetsASmallerFontAndThenANarrowerOne) {
  const QFont before = QApplication::font();
  // The text fits at this size, and with letters of this share of their width; 0 is their own.
  const struct {
    int body, points, size, share, fittingSize, fittingShare;
  } cases[] = {{13, 0, 13, 0, 13, 0},  {13, 0, 12, 0, 12, 0},   {13, 0, 10, 0, 10, 0},
               {13, 0, 9, 0, 10, 92},  {13, 0, 10, 98, 10, 98}, {13, 0, 10, 93, 10, 92},
               {13, 11, 8, 0, 8, 0},   {13, 11, 7, 0, 8, 92},   {13, 14, 13, 0, 14, 92},
               {13, 24, 20, 0, 20, 0}, {13, 24, 14, 0, 14, 0},  {13, 24, 13, 0, 14, 92},
               {20, 13, 20, 0, 20, 0}, {20, 14, 21, 0, 21, 0},  {13, 1, 1, 0, 1, 0}};
  for (const auto& c : cases) {
    QFont body = before;
    body.setPixelSize(c.body);
    QApplication::setFont(body);
    const QFont font = fittingFont({.fontSize = c.points}, [&](const QFont& tried) {
      return tried.pixelSize() <= c.size &&
             (c.share == 0 || (tried.stretch() > 0 && tried.stretch() <= c.share));
    });
    EXPECT_EQ(font.pixelSize(), c.fittingSize) << c.points << " in " << c.size;
    EXPECT_EQ(font.stretch(), c.fittingShare) << c.points << " in " << c.size;
    EXPECT_DOUBLE_EQ(scale(), std::max(1.0, c.body * 3 / 40.0));
  }
  QFont body = before;
  body.setPointSizeF(11);  // 15 pixels; 14 points are as many at this scale
  QApplication::setFont(body);
  EXPECT_EQ(fontOf({.fontSize = 14}).pixelSize(), 16) << "a heading is larger than the text";
  QApplication::setFont(before);
}

TEST_F(Sizes, ATextMayUseTheSpaceUpToTheNextVisibleControl) {
  QFont body = QApplication::font();
  body.setPixelSize(13);
  QApplication::setFont(body);
  EXPECT_EQ(freeWidth(form().Label2), 288);
  EXPECT_EQ(freeWidth(form().Label6), 236) << "up to the edge of the window";
  EXPECT_EQ(freeWidth(form().Listbox1), 285) << "over lines";
  form().PushButton1.SetVisible(false);
  EXPECT_EQ(freeWidth(form().PushButton3), 528);
  form().Label6.SetTop(43);
  EXPECT_EQ(freeWidth(form().Label2), 528) << "it begins where the label ends";
  form().Label6.SetTop(0);
  EXPECT_EQ(freeWidth(form().Label2), 528);
}

TEST_F(Sizes, OnADesktopThatReadsRightToLeftTheWindowIsMirrored) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  QCoreApplication::processEvents();
  form().TextBox.UserClicks();
  draw();
  expectWhole(form(), "right to left: ");
  EXPECT_EQ(widget<QLabel>(form().Label4).alignment(), Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
  EXPECT_EQ(widget<QWidget>(form().SRTBox).geometry(), QRect(562 - 319 - 100, 135, 100, 20));
  EXPECT_EQ(widget<QWidget>(form().PushButton2).geometry(), QRect(562 - 446 - 89, 47, 89, 20));
  const QImage seen = view(form()).content().grab().toImage();
  const QRgb ground = seen.pixel(1, 1);
  EXPECT_NE(seen.pixel(562 - 1 - 307, 150), ground) << "the bracket of the file types";
  view(form()).resize(700, view(form()).height());
  draw();
  EXPECT_EQ(widget<QWidget>(form().PushButton2).geometry().right(), 700 - 446 - 1);
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
