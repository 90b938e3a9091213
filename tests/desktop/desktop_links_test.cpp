// Links: dropped on the form, pasted into it, and opened in other programs.

#include <QClipboard>
#include <QMessageBox>
#include <QMimeData>

#include "desktop_fixture.h"

namespace {

// At first the system has no program that opens anything.
class Opening : public Desktop {
 protected:
  void SetUp() override {
    Desktop::SetUp();
    host.realOpening = true;
    qputenv("PATH", programs_.Path().c_str());
  }
  void TearDown() override {
    qputenv("PATH", path_);
    Desktop::TearDown();
  }
  // Gives it one, which writes down what it opens if its input is a device, and ends with this status.
  void installOpener(int status) {
    WriteFile(programs_ / "xdg-open", "#!/bin/sh\n[ ! -c /dev/stdin ] || echo \"$1\" >> '" +
                                          programs_ / "opened" + "'\nexit " + std::to_string(status) + "\n");
    std::filesystem::permissions(programs_ / "xdg-open", std::filesystem::perms::owner_all);
  }
  std::string opened() const { return ReadFile(programs_ / "opened"); }

 private:
  const TemporaryFolder programs_;
  const QByteArray path_ = qgetenv("PATH");
};

}  // namespace

TEST_F(Desktop, ALinkDroppedAnywhereOnTheFormReplacesTheText) {
  const auto drop = [&](QWidget& where, QMimeData& data) -> std::string {
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&where, &enter);
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                       Qt::ShiftModifier);
    widget<QWidget>(form().searchField).setFocus();
    QApplication::sendEvent(&where, &dropped);
    draw();
    EXPECT_EQ(dropped.isAccepted(), enter.isAccepted());
    if (!dropped.isAccepted()) return "refused";
    EXPECT_EQ(dropped.dropAction(), Qt::CopyAction);
    EXPECT_EQ(nameOfFocus(), "TextField1");
    return form().TextField1.Text();
  };
  aboutWin::Get().Show();
  form().Show();
  QMimeData address, text, nothing;
  address.setData(QStringLiteral("text/uri-list"), "https://youtu.be/abc\r\n");
  text.setText(QStringLiteral(" youtu.be/hB7rV2kQx0w?si=x\n"));
  EXPECT_EQ(drop(link(), address), "https://youtu.be/abc");
  EXPECT_EQ(drop(link(), text), "https://www.youtube.com/watch?v=hB7rV2kQx0w")
      << "in place of the earlier text";
  EXPECT_EQ(drop(view(form()), address), "https://youtu.be/abc");
  EXPECT_EQ(drop(view(form()), nothing), "refused");
  EXPECT_EQ(drop(view(aboutWin::Get()), address), "refused");
  QDragMoveEvent move({5, 5}, Qt::CopyAction, &address, Qt::LeftButton, Qt::NoModifier);
  move.ignore();
  static_cast<QObject&>(link()).event(&move);
  EXPECT_TRUE(move.isAccepted());
}

TEST_F(Desktop, APastedLinkIsMadePlainAndATypedOneStays) {
  const QString shared = QStringLiteral("https://youtu.be/hB7rV2kQx0w?si=x");
  const std::string plain = "https://www.youtube.com/watch?v=hB7rV2kQx0w";
  QApplication::clipboard()->setText(shared);
  link().setFocus();
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(link().text().toStdString(), plain);
  press(Qt::Key_A, Qt::ControlModifier);
  write(shared);
  EXPECT_EQ(form().TextField1.Text(), shared.toStdString());
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(form().TextField1.Text(), shared.toStdString()) << "the same text was there before";
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(form().TextField1.Text(), (shared + shared).toStdString()) << "into the middle of a text";
  press(Qt::Key_A, Qt::ControlModifier);
  link().paste();
  EXPECT_EQ(form().TextField1.Text(), plain);
  link().undo();
  draw();
  EXPECT_EQ(link().text(), shared) << "undone like any edit";
}

TEST_F(Opening, AnOpenerIsGivenEncodedAddresses) {
  installOpener(0);
  host.ShowURL("https://www.youtube.com/watch?v=a b&t=1");
  const std::string address = "https://www.youtube.com/watch?v=a%20b&t=1\n";
  EXPECT_TRUE(waitFor([&] { return opened() == address; }));
  host.Launch("/tmp/a;\xC3\xA9.txt");
  EXPECT_TRUE(waitFor([&] { return opened() == address + "file:///tmp/a;%C3%A9.txt\n"; }));
  EXPECT_FALSE(shownDialog());
}

TEST_F(Opening, AFailureOfTheOpenerIsReportedAfterItEnds) {
  installOpener(3);
  host.ShowURL("https://www.youtube.com/watch?v=a&t=1");
  EXPECT_FALSE(shownDialog()) << "the user does not wait for the opener";
  EXPECT_TRUE(waitFor(shownDialog<QMessageBox>));
}

TEST_F(Opening, AFailureOfTheOpenerLeavesARunningCommandAlone) {
  installOpener(3);
  server.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\n", Reply::End::Stall});
  when(shownDialog<QMessageBox>, [&] {
    EXPECT_TRUE(shownDialog()->testAttribute(Qt::WA_ShowWithoutActivating));
    QTest::keyClick(&link(), Qt::Key_Escape);
  });
  host.ShowURL("https://www.youtube.com/watch?v=a");
  search(QStringLiteral("abc"));
  EXPECT_FALSE(app->IsCommandRunning()) << "Escape stopped it";
  ASSERT_TRUE(shownDialog<QMessageBox>()) << "and left the message";
  QTest::keyClick(shownDialog(), Qt::Key_Escape);
  EXPECT_FALSE(shownDialog());
}

TEST_F(Opening, AnAddressThatCannotBeOpenedIsShownForCopying) {
  QStringList texts;
  const auto dismiss = [&texts] {
    auto* box = shownDialog<QMessageBox>();
    texts << box->text();
    for (QAbstractButton* button : box->buttons()) {
      if (box->buttonRole(button) == QMessageBox::ActionRole) button->click();
    }
    if (box->isVisible()) box->accept();
  };
  QTimer::singleShot(0, dismiss);
  host.ShowURL("https://www.youtube.com/watch?v=a b&t=1");
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("https://www.youtube.com/watch?v=a b&t=1"));
  QTimer::singleShot(0, dismiss);
  host.Launch("/tmp/a;\xC3\xA9.txt");
  EXPECT_EQ(texts.back(), QStringLiteral("No program could open this file:\n\n/tmp/a;\u00E9.txt"));
  installOpener(0);
  for (const char* other : {"file:///etc/passwd", "ftp://host/", "https:///path"}) {
    QTimer::singleShot(0, dismiss);
    host.ShowURL(other);
    EXPECT_EQ(texts.back(), QStringLiteral("No program could open this address:\n\n") + other);
  }
  host.ShowURL("http://host/");
  EXPECT_TRUE(waitFor([&] { return opened() == "http://host/\n"; })) << "only the web is browsed";
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
