#include "Tour.h"

#include <QAbstractItemView>
#include <QPixmap>
#include <QTest>
#include <QWidget>
#include <algorithm>
#include <iostream>

#include "app/Window1.h"
#include "desktop/WindowView.h"
#include "wordsearch/SearchWin.h"

bool Tour::Run() {
  Search();
  SaveInEveryForm();
  Picture("Window1", "window1.png");
  SearchWords();
  ShowAbout();
  return succeeded_;
}

void Tour::Search() {
  const std::string link = app_.endpoints.WatchPage(app_.endpoints.SampleCode);
  std::cout << "Typing " << link << " and pressing Return ..." << std::endl;
  Type("TextField1", link);
  QTest::keyClick(WidgetOf("Window1", "TextField1"), Qt::Key_Return);
  const Listbox& tracks = Window1::Get().Listbox1;
  std::cout << tracks.ListCount() << " languages are listed." << std::endl;
  Check(tracks.ListCount() > 0, "the list of languages");
}

void Tour::SaveInEveryForm() {
  std::cout << "Selecting all of them, and saving SRT, WebVTT and the three text forms ..." << std::endl;
  QWidget* list = WidgetOf("Window1", "Listbox1");
  list->setFocus();
  QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
  Click("Window1", "openBox");
  for (const char* format : {"SRTBox", "WebVTTBox"}) {
    Click("Window1", format);
    Click("Window1", "PushButton1");
  }
  Click("Window1", "TextBox");
  const std::pair<const char*, const char*> forms[] = {
      {"paragraphBox", "paragraph "}, {"lineBox", "lines "}, {"timecodeBox", "lines with times "}};
  for (const auto& [box, prefix] : forms) {
    Click("Window1", box);
    platform_.SavePrefixed(prefix);
    Click("Window1", "PushButton1");
  }
  platform_.SavePrefixed("");
}

void Tour::SearchWords() {
  std::cout << "Searching two languages for \"orchest|harbour\" ..." << std::endl;
  auto* list = qobject_cast<QAbstractItemView*>(WidgetOf("Window1", "Listbox1"));
  const auto clickRow = [&](int row, Qt::KeyboardModifiers keys) {
    const QPoint at = list->visualRect(list->model()->index(row, 0)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, keys, at);
  };
  clickRow(0, Qt::NoModifier);
  clickRow(3, Qt::ControlModifier);
  Type("searchField", "orchest|harbour");
  QTest::keyClick(WidgetOf("Window1", "searchField"), Qt::Key_Return);
  Check(app_.FindWindow(SearchWin::kName) != nullptr, "the window of the hits");
  if (!succeeded_) return;
  Picture(SearchWin::kName, "search_results.png");
  auto* results = qobject_cast<QAbstractItemView*>(WidgetOf(SearchWin::kName, "resultsList"));
  QTest::mouseClick(results->viewport(), Qt::LeftButton, Qt::NoModifier,
                    results->visualRect(results->model()->index(0, 1)).center());
  Click(SearchWin::kName, "saveBtn");
}

void Tour::ShowAbout() {
  Click("Window1", "Canvas1");
  Check(app_.FindWindow("aboutWin") != nullptr, "the About window");
  if (succeeded_) Picture("aboutWin", "about.png");
}

QWidget* Tour::WidgetOf(const std::string& window, const std::string& control) const {
  const Window& record = *app_.FindWindow(window);
  WindowView* view = platform_.viewOf(record);
  view->flush();
  return view->widgetOf(*record.FindControl(control));
}

void Tour::Click(const std::string& window, const std::string& control) {
  QWidget* widget = WidgetOf(window, control);
  // Near the left edge, on a box's mark: to the right of a short caption a box takes no clicks.
  const QPoint at(std::min(8, widget->width() / 2), widget->height() / 2);
  QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, at);
}

void Tour::Type(const std::string& control, const std::string& text) {
  QWidget* field = WidgetOf("Window1", control);
  field->setFocus();
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(field, QString::fromStdString(text));
}

void Tour::Picture(const std::string& window, const std::string& file) {
  WindowView* view = platform_.viewOf(*app_.FindWindow(window));
  view->flush();
  QCoreApplication::processEvents();
  const std::string path = folder_ + "/" + file;
  Check(view->grab().save(QString::fromStdString(path)), "the picture " + path);
}

void Tour::Check(bool holds, const std::string& what) {
  if (holds) return;
  succeeded_ = false;
  std::cout << "Something is missing: " << what << std::endl;
}
