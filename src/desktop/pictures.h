// The program's pictures, each loaded on first use and kept from then on.
#pragma once

#include <QIcon>
#include <string>

// The picture of this file name among the resources, with its finer version for fine screens; one
// that draws nothing if there is none.
const QIcon& picture(const std::string& file);

// The program's icon in all its sizes.
const QIcon& programIcon();
