// The desktop's own way of opening addresses and files in other programs.
#pragma once

#include <functional>

class QUrl;

// Passes url to the system without waiting. False if the system has no opener; if the opener ends with a
// failure, `failed` is called from the event loop. An opener outlives the program.
bool openBySystem(const QUrl& url, const std::function<void()>& failed);
