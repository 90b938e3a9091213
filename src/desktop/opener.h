// The desktop's program that opens addresses and files in others.
#pragma once

#include <functional>

class QUrl;

// Hands url to the system, and doesn't wait. False if nothing there takes it; where that shows only later,
// since the opener ends with a failure, failed is called from the event loop. An opener that runs on when the
// program ends goes on without it.
bool openBySystem(const QUrl& url, const std::function<void()>& failed);
