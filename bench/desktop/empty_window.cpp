// The least that a program with Qt's widgets can show: one window with nothing in it, of the form's size.

#include <QApplication>
#include <QWidget>

int main(int count, char** arguments) {
  QApplication qt(count, arguments);
  QWidget window;
  window.resize(562, 500);
  window.show();
  return QApplication::exec();
}
