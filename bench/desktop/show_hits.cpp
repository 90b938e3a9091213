// ravelyn-show-hits us|table COUNT: prints the milliseconds from the first hit until a list of COUNT hits is
// on the screen with its last row, in the program's window or in Qt's own table of items.

#include <QAbstractItemView>
#include <QApplication>
#include <QTableWidget>
#include <QWindow>
#include <chrono>
#include <iostream>

#include "../QuietPlatform.h"
#include "../samples.h"
#include "app/App.h"
#include "desktop/QtPlatform.h"
#include "ravelyn/commands.h"
#include "wordsearch/SearchWin.h"

namespace {

constexpr char kTime[] = "00:01:02.500";

// The list of the only open window.
QAbstractItemView* ListOnScreen() {
  for (QWidget* widget : QApplication::allWidgets()) {
    auto* list = qobject_cast<QAbstractItemView*>(widget);
    const QWindow* window = list ? list->window()->windowHandle() : nullptr;
    if (window && window->isExposed()) return list;
  }
  return nullptr;
}

void DrawLastRow() {
  while (!ListOnScreen()) QApplication::processEvents(QEventLoop::AllEvents, 10);
  ListOnScreen()->scrollToBottom();
  QApplication::processEvents();
  ListOnScreen()->viewport()->repaint();
}

void ShowByUs(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    Listbox& results = SearchWin::Get().resultsList;
    results.AddRow(kTime);
    results.SetCell(results.LastIndex(), 1, text);
    RuntimeBackgroundTask();
  }
  SearchWin::Get().Show();
}

void ShowByTable(QTableWidget& table, const std::vector<std::string>& texts) {
  table.setColumnCount(2);
  table.setRowCount(static_cast<int>(texts.size()));
  for (int row = 0; row < table.rowCount(); ++row) {
    table.setItem(row, 0, new QTableWidgetItem(QString::fromLatin1(kTime)));
    table.setItem(row, 1, new QTableWidgetItem(QString::fromStdString(texts[static_cast<std::size_t>(row)])));
  }
  table.show();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const bool us = std::string(arguments[1]) == "us";
  const std::vector<std::string> texts = CueTextsOf(std::stoul(arguments[2]));
  QApplication qt(count, arguments);
  QtPlatform platform;
  App app(platform, kCommands, LocalEndpoints("127.0.0.1:1"));
  QTableWidget table;
  table.resize(692, 540);

  const auto start = std::chrono::steady_clock::now();
  us ? ShowByUs(texts) : ShowByTable(table, texts);
  DrawLastRow();
  std::cout << std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count()
            << "\n";
  platform.dropViews();
  return 0;
}
