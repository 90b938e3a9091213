// Tool tips of texts that are cut. Qt's own would be read as a description, with the marks in it.
#pragma once

#include <QString>

class QWidget;

// shown is plain text; "" takes the tip away.
void setTip(QWidget& widget, const QString& shown);
// "" for none.
QString tipOf(const QWidget& widget);
