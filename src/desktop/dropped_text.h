// What a user drops on a window.
#pragma once

#include <QDropEvent>
#include <QString>
#include <optional>

class QMimeData;

// The first address in dragged, else its text without white space around it; nullopt if it has neither.
std::optional<QString> droppedText(const QMimeData& dragged);

// The receiver takes the drop as a copy.
void acceptCopy(QDropEvent& event);
