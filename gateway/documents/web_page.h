// Recognises web pages that were saved as captions: consent pages, captchas, errors.
#pragma once

#include <string_view>

namespace gateway {

// Whether text, in UTF-8, begins like a web page.
bool IsWebPage(std::string_view text);

}  // namespace gateway
