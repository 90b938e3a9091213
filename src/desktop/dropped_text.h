// What a user drops on a window.
#pragma once

#include <QDropEvent>
#include <QString>
#include <optional>

class QMimeData;

// The first address of what is dragged, else its text without white space around it; nullopt where it has
// neither.
std::optional<QString> droppedText(const QMimeData& dragged);

// The drop copies, and is the receiver's.
void acceptCopy(QDropEvent& event);
