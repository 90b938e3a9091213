// The program's pictures, each loaded on first use and kept from then on.
#pragma once

#include <QIcon>
#include <string>

class QPainter;
class QRect;

// Fills place with the picture of this file name among the resources, or with its "@2x" version on a screen
// of high resolution; draws nothing if there is none.
void drawPicture(QPainter& painter, const QRect& place, const std::string& file);

// The program's icon in all its sizes.
const QIcon& programIcon();
