// Tool tips for elided texts. A screen reader would read Qt's own as a description, with its markup.
#pragma once

#include <QString>

class QWidget;

// shown is plain text; "" removes the tip.
void setTip(QWidget& widget, const QString& shown);
// "" for none.
QString tipOf(const QWidget& widget);
