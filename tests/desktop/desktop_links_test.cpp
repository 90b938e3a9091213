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
  // Gives it one, which writes down what it opens and ends with this status.
  void installOpener(int status) {
    WriteFile(programs_ / "xdg-open", "#!/bin/sh\necho \"$1\" >> '" + programs_ / "opened" + "'\nexit " +
                                          std::to_string(status) + "\n");
    std::filesystem::permissions(programs_ / "xdg-open", std::filesystem::perms::owner_all);
  }
  std::string opened() const { return ReadFile(programs_ / "opened"); }

 private:
  const TemporaryFolder programs_;
  const QByteArray path_ = qgetenv("PATH");
};

}  // namespace

TEST_F(Desktop, ALinkDroppedAnywhereOnTheFormReplacesTheText) {
  const auto drop = [&](QWidget& where, QMimeData& data) {
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&where, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                       Qt::ShiftModifier);
    widget<QWidget>(form().searchField).setFocus();
    QApplication::sendEvent(&where, &dropped);
    draw();
    EXPECT_TRUE(dropped.isAccepted());
    EXPECT_EQ(dropped.dropAction(), Qt::CopyAction);
    EXPECT_EQ(nameOfFocus(), "TextField1");
    EXPECT_EQ(link().text().toStdString(), form().TextField1.Text());
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
  QDragMoveEvent move({5, 5}, Qt::CopyAction, &address, Qt::LeftButton, Qt::NoModifier);
  move.ignore();
  static_cast<QObject&>(link()).event(&move);
  EXPECT_TRUE(move.isAccepted());
  const auto expectRefused = [](QWidget& where, QMimeData& data) {
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&where, &enter);
    EXPECT_FALSE(enter.isAccepted());
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&where, &dropped);
    EXPECT_FALSE(dropped.isAccepted());
  };
  expectRefused(view(form()), nothing);
  expectRefused(view(aboutWin::Get()), address);
  EXPECT_EQ(form().TextField1.Text(), "https://youtu.be/abc");
}

TEST_F(Desktop, APastedLinkIsMadePlainAndATypedOneStays) {
  const QString shared = QStringLiteral("https://youtu.be/hB7rV2kQx0w?si=x");
  const std::string plain = "https://www.youtube.com/watch?v=hB7rV2kQx0w";
  QApplication::clipboard()->setText(shared);
  link().setFocus();
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(form().TextField1.Text(), plain);
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
  for (const int status : {3, 4}) {
    installOpener(status);
    host.ShowURL("https://www.youtube.com/watch?v=a&t=1");
    EXPECT_FALSE(shownDialog()) << "the user does not wait for the opener";
    ASSERT_TRUE(waitFor([] { return shownDialog() != nullptr; }));
    EXPECT_TRUE(
        shownDialog<QMessageBox>()->text().startsWith(QStringLiteral("No program could open this address:")));
    shownDialog()->accept();
  }
}

TEST_F(Opening, AFailureOfTheOpenerLeavesARunningCommandAlone) {
  installOpener(3);
  server.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\n", Reply::End::Stall});
  link().setFocus();
  QTimer looking;
  QObject::connect(&looking, &QTimer::timeout, [&] {
    if (!shownDialog()) return;
    looking.stop();
    EXPECT_TRUE(shownDialog()->testAttribute(Qt::WA_ShowWithoutActivating));
    QTest::keyClick(&link(), Qt::Key_Escape);
  });
  looking.start(5);
  host.ShowURL("https://www.youtube.com/watch?v=a");
  search(QStringLiteral("abc"));
  EXPECT_FALSE(app->IsCommandRunning()) << "Escape stopped it";
  ASSERT_TRUE(shownDialog<QMessageBox>()) << "and left the message";
  QTest::keyClick(shownDialog(), Qt::Key_Escape);
  EXPECT_FALSE(shownDialog());
}

TEST_F(Opening, AnAddressThatCannotBeOpenedIsShownForCopying) {
  std::vector<QString> texts;
  const auto dismiss = [&texts] {
    auto* box = shownDialog<QMessageBox>();
    ASSERT_TRUE(box);
    texts.push_back(box->text());
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
  installOpener(0);
  const std::vector<std::string> others = {"file:///etc/passwd", "ftp://host/", "https:///path"};
  for (const std::string& other : others) {
    QTimer::singleShot(0, dismiss);
    host.ShowURL(other);
    EXPECT_EQ(texts.back(), QStringLiteral("No program could open this address:\n\n") + other.c_str());
  }
  EXPECT_EQ(opened(), "") << "only the web is browsed";
  ASSERT_EQ(texts.size(), 5U);
  EXPECT_EQ(texts[1], QStringLiteral("No program could open this file:\n\n/tmp/a;\u00E9.txt"));
  host.ShowURL("http://host/");
  EXPECT_TRUE(waitFor([&] { return opened() == "http://host/\n"; }));
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
