// Every window in the fonts that a desktop may have: no text of the program is cut, elided, or over another.

#include <QAbstractButton>
#include <QFontDatabase>
#include <QFontInfo>
#include <QScreen>
#include <QStyle>

#include "desktop/scale.h"
#include "desktop/shown_text.h"
#include "desktop_fixture.h"

namespace {

struct Drawn {
  std::string name;
  QRect text;
};

std::string named(const QFont& font) {
  return font.family().toStdString() + " " + std::to_string(font.pointSizeF());
}

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
    for (const Drawn& one : drawn) {
      for (const Drawn& other : drawn) {
        EXPECT_FALSE(&one != &other && one.text.intersects(other.text))
            << at << one.name << " over " << other.name;
      }
    }
  }
  Drawn expectFits(const Control& control, const QWidget& widget, const QString& text,
                   const std::string& at) {
    const QFontMetrics metrics(widget.font());
    const auto* label = dynamic_cast<const Label*>(&control);
    const bool lines = control.Appearance().multiline;
    const std::string whole = label ? label->Text() : static_cast<const Button&>(control).Caption();
    const std::string name = at + control.Owner().Name() + "." + control.Name();
    EXPECT_TRUE(widget.isVisible()) << name;
    EXPECT_EQ(text, shownText(whole, lines ? Lines::Many : Lines::One)) << name;
    const int mark = markWidth(widget, control.Kind());
    const QRect available = widget.rect().adjusted(mark, 0, 0, 0);
    const QRect needed =
        metrics.boundingRect(lines ? QRect(0, 0, available.width(), 9999) : QRect(0, 0, 9999, 99),
                             lines ? Qt::TextWordWrap : Qt::TextSingleLine, text);
    EXPECT_LE(needed.width(), available.width()) << name;
    EXPECT_LE(metrics.tightBoundingRect(text).height(), available.height()) << name;
    EXPECT_TRUE(!lines || needed.height() <= available.height()) << name;
    const bool heading = control.Appearance().fontSize > 11;
    const int size = QFontInfo(widget.font()).pixelSize(), body = QFontInfo(QApplication::font()).pixelSize();
    EXPECT_TRUE(!heading || size > body) << name << " at " << size << " in " << body;
    EXPECT_GE(size * 5, (control.Appearance().fontSize ? scaled(control.Appearance().fontSize) : body) * 4)
        << name;
    QRect place(QPoint(),
                QSize(needed.width(), lines ? needed.height() : metrics.tightBoundingRect(text).height()));
    const bool isCentred =
        control.Appearance().align == Align::Center || control.Kind() == ControlKind::PushButton;
    place.moveCenter(widget.geometry().center());
    const bool rightToLeft = widget.layoutDirection() == Qt::RightToLeft;
    if (!isCentred && !rightToLeft) place.moveLeft(widget.x() + mark);
    if (!isCentred && rightToLeft) place.moveRight(widget.geometry().right() - mark);
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
        EXPECT_DOUBLE_EQ(scale(), std::max(1.0, points * dpi / 960.0));
        for (const auto& window : app->Windows()) {
          expectWhole(*window, named(font) + " ");
          const QSize screen = view(*window).screen()->availableGeometry().size();
          EXPECT_EQ(view(*window).size().boundedTo(screen), view(*window).size()) << "it fits the screen";
        }
        const ListView& list = widget<ListView>(results.resultsList);
        EXPECT_GE(list.columnWidth(0),
                  list.fontMetrics().horizontalAdvance(QStringLiteral("10:00:00.000")) + 8);
      }
    }
  }
  EXPECT_EQ(QApplication::focusWidget(), QApplication::activeWindow()->focusWidget());
  const int width = results.Width();
  for (const int wider : {200, -200})
    view(results).resize(view(results).width() + wider, view(results).height());
  EXPECT_EQ(results.Width(), width) << "also with scroll bars, the window shrinks again";
  QApplication::setFont(before);
}

TEST_F(Sizes, OnADesktopThatReadsRightToLeftTheWindowIsMirrored) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  QCoreApplication::processEvents();
  form().TextBox.UserClicks();
  draw();
  expectWhole(form(), "right to left: ");
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
