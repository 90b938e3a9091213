// Messages and save dialogs, which leave the windows usable.

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QStandardPaths>

#include "desktop/dialogs.h"
#include "desktop/shown_text.h"
#include "desktop_fixture.h"

namespace {

class SaveDialogs : public Desktop {
 protected:
  // Saves a language and calls act with the save dialog.
  void answerBy(const std::function<void(QFileDialog&)>& act, bool aboutInFront = false) {
    host.realSaves = true;
    Offer(server, "abc", kTwoLanguages);
    search(QStringLiteral("abc"));
    form().SRTBox.UserClicks();
    clickRow(languages(), 1);
    if (aboutInFront) aboutWin::Get().Show();
    when(shownDialog<QFileDialog>, [&] {
      EXPECT_EQ(shownDialog()->windowTitle(), QStringLiteral("Save \u2013 German"));
      EXPECT_EQ(shownDialog()->parentWidget(), &view(*app->ActiveWindow()));
      act(*shownDialog<QFileDialog>());
    });
    form().PushButton1.UserClicks();
    EXPECT_EQ(host.calls, Texts{"save:  German.srt (German)"});
    EXPECT_FALSE(shownDialog());
  }
};

}  // namespace

TEST_F(Desktop, AFormThatClosesDismissesItsMessage) {
  host.realMessages = true;
  for (const bool isLast : {false, true}) {
    if (!isLast) aboutWin::Get().Show();
    form().Show();
    QTimer::singleShot(50, [&] {
      EXPECT_TRUE(shownDialog<QMessageBox>());
      form().UserCloses();
    });
    form().TextField1.UserTypes("no link");
    if (isLast) form().PushButton2.UserClicks();
    if (!isLast) app->Dispatch(&form(), [] { MsgBox("of a handler that is no command"); });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(shownDialog());
    EXPECT_EQ(host.hasLeft, isLast);
    if (!isLast) form().Show(), aboutWin::Get().UserCloses();
  }
}

TEST_F(SaveDialogs, EscapeInTheFormStopsTheCommandAndDismissesTheDialog) {
  answerBy([&](QFileDialog&) { QTest::keyClick(&link(), Qt::Key_Escape); });
  EXPECT_TRUE(form().Visible());
}

TEST_F(SaveDialogs, AClosingWindowPassesItsDialogToTheNextAndTheLastEndsIt) {
  const auto closeBoth = [&](QFileDialog& dialog) {
    aboutWin::Get().UserCloses();
    EXPECT_EQ(shownDialog(), &dialog);
    EXPECT_EQ(dialog.parentWidget(), &view(form()));
    view(form()).close();
  };
  answerBy(closeBoth, true);
  EXPECT_TRUE(host.hasLeft);
}

TEST_F(SaveDialogs, TheQuitShortcutWorksInTheDialog) {
  answerBy([&](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Q, Qt::ControlModifier); });
  EXPECT_TRUE(host.hasLeft);
}

TEST_F(Desktop, AMessageOutsideACommandTakesNoKeys) {
  host.realMessages = true;
  link().setFocus();
  QTimer::singleShot(0, [&] {
    ASSERT_TRUE(shownDialog<QMessageBox>());
    EXPECT_EQ(shownDialog()->windowModality(), Qt::NonModal);
    EXPECT_TRUE(shownDialog()->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_EQ(shownDialog()->parentWidget(), &view(form()));
    QTest::keyClick(&link(), Qt::Key_Escape);
  });
  app->Dispatch(nullptr, [] { MsgBox("Ravelyn cannot work without an Internet connection."); });
  EXPECT_FALSE(shownDialog()) << "Escape in the form dismisses it";
}

TEST_F(Desktop, ASaveDialogStartsInTheFolderOfTheLastFile) {
  const TemporaryFolder folder;
  Texts folders;
  const auto ask = [&](const std::string& path) {
    QTimer::singleShot(0, [&] {
      auto* dialog = shownDialog<QFileDialog>();
      ASSERT_TRUE(dialog);
      folders.push_back(dialog->directory().path().toStdString());
      dialog->selectFile(QString::fromStdString(path));
      path.empty() ? dialog->reject() : static_cast<QDialog*>(dialog)->accept();
    });
    return host.QtPlatform::AskSavePath("", "German.srt");
  };
  EXPECT_EQ(ask(folder / "a.srt"), folder / "a.srt");
  EXPECT_EQ(ask(""), std::nullopt);
  EXPECT_EQ(ask(folder / "\xC3\xA9.srt"), folder / "\xC3\xA9.srt");
  for (const bool replaces : {false, true}) {
    WriteFile(folder / "a.srt", "kept");
    when(shownDialog<QMessageBox>, [&] {
      if (!replaces) when(shownDialog<QFileDialog>, [] { shownDialog()->reject(); });
      auto* question = shownDialog<QMessageBox>();
      EXPECT_EQ(question->defaultButton(), question->button(QMessageBox::No));
      question->button(replaces ? QMessageBox::Yes : QMessageBox::No)->click();
    });
    EXPECT_EQ(ask(folder / "a.srt"), replaces ? std::optional(folder / "a.srt") : std::nullopt);
  }
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  const std::string first = (QDir(documents).exists() ? documents : QDir::homePath()).toStdString();
  const std::string& later = folder.Path();  // also after a cancelled one
  EXPECT_EQ(folders, (Texts{first, later, later, later, later}));
}

TEST(SaveDialog, ShowsNameFolderTypesAndStep) {
  const TemporaryFolder folder;
  const auto dialog = makeSaveDialog("TEXT", "search_results.txt", QString::fromStdString(folder.Path()),
                                     "Spanish, 3 of 8", nullptr);
  EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Save \u2013 Spanish, 3 of 8"));
  EXPECT_EQ(dialog->selectedFiles(), QStringList{QString::fromStdString(folder / "search_results.txt")});
  EXPECT_EQ(dialog->nameFilters(), (QStringList{"Text files (*.txt *.text)", "All files (*)"}));
  const auto any = makeSaveDialog("", "German.srt", QString::fromStdString(folder.Path()), "", nullptr);
  EXPECT_EQ(any->windowTitle(), QStringLiteral("Save"));
  EXPECT_EQ(any->nameFilters(), QStringList{"All files (*)"});
  any->selectFile(QStringLiteral("Mein Name"));
  EXPECT_EQ(any->selectedFiles(), QStringList{QString::fromStdString(folder / "Mein Name.srt")});
  for (const auto& [typed, saved] : {std::pair("/a.b/Dr. Smith", "/a.b/Dr. Smith.srt"),
                                     {"Vol. 2.5", "Vol. 2.5.srt"},
                                     {"a.srt", "a.srt"},
                                     {"a.3gp", "a.3gp"},
                                     {"a.", "a..srt"}}) {
    EXPECT_EQ(withExtension(QString::fromUtf8(typed), "German.srt").toStdString(), saved);
  }
}

TEST(Message, IsPlainAndFitsTheScreen) {
  const std::string many(100'000, 'y');
  const auto box = makeMessage("<b>" + many, "<i>why</i>" + many, nullptr);
  box->ensurePolished();
  box->show();
  for (const QLabel* part : box->findChildren<QLabel*>()) {
    EXPECT_TRUE(part->text().isEmpty() || part->textFormat() == Qt::PlainText);
  }
  const QSize screen = QGuiApplication::primaryScreen()->availableSize();
  EXPECT_EQ(box->size().boundedTo(screen), box->size());
  EXPECT_EQ(box->textInteractionFlags(), Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  EXPECT_EQ(box->escapeButton(), box->button(QMessageBox::Ok));
  const auto shown = [](const QString& start, qsizetype length) {
    return withBreaks(start + QString(length - start.size(), QChar(u'y')) + QChar(u'\u2026'));
  };
  EXPECT_EQ(box->text(), shown(QStringLiteral("<b>"), 1200));
  EXPECT_EQ(box->informativeText(), shown(QStringLiteral("<i>why</i>"), 300));
  const auto cut = [](const QString& text) { return makeMessage(text.toStdString(), "", nullptr)->text(); };
  const QString twenty = QStringLiteral("line\n").repeated(19) + QStringLiteral("last");
  EXPECT_EQ(cut(twenty), twenty);
  EXPECT_EQ(cut(twenty + QStringLiteral("\n21\n22")), twenty + QStringLiteral("\n\u2026"));
  // A line of 80 characters takes two of the twenty.
  const QString eighteen = (QString(80, QChar(u'a')) + QChar(u'\n')).repeated(9);
  const QString words = QStringLiteral("four").repeated(9) + QChar(u' ');  // of 37 characters
  EXPECT_EQ(cut(eighteen + words.repeated(4)), eighteen + words.repeated(4));
  EXPECT_EQ(cut(eighteen + words.repeated(6)), eighteen + words.repeated(6).left(160) + QChar(u'\u2026'));
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
