#include "gateway/documents/convert.h"

#include <algorithm>
#include <mutex>

#include "gateway/documents/Cues.h"
#include "gateway/documents/ascii.h"
#include "gateway/documents/cleaning.h"
#include "gateway/documents/document.h"
#include "gateway/documents/encoding.h"
#include "gateway/documents/readers.h"
#include "gateway/documents/web_page.h"

namespace gateway {
namespace {

constexpr CaptionFormat kFormats[] = {
    {"srv1", ReadSrv1, true}, {"srv2", ReadSrv2, true}, {"srv3", ReadSrv3, true}, {"json3", ReadJson3},
    {"ttml", ReadTtml, true}, {"vtt", ReadVtt},         {"srt", ReadSrt},
};

constexpr std::size_t kLargeFile = 1u << 20;
constexpr std::string_view kTooLarge = "this file is too large";

Conversion Fault(std::string_view fault) { return {"", std::string(fault)}; }

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

Conversion Convert(std::string bytes, const CaptionFormat& format, const TrackFacts& facts) {
  auto text = ToUtf8(std::move(bytes), format.isXml);
  if (!text) return Fault(kTooLarge);
  if (IsBlank(*text)) return Fault("this file is empty");
  if (IsWebPage(*text)) return Fault("this file is a web page");
  Cues cues(text->size());
  if (std::string fault = format.read(*std::move(text), cues); !fault.empty()) return Fault(fault);
  if (cues.overflowed) return Fault(kTooLarge);
  Clean(cues, facts.language, facts.automatic || facts.language.ends_with(kOriginal));
  if (cues.list.empty()) return Fault("this file holds no captions");
  auto document = WriteDocument(cues);
  return document ? Conversion{*std::move(document), ""} : Fault(kTooLarge);
}

}  // namespace

std::span<const CaptionFormat> CaptionFormats() { return kFormats; }

const CaptionFormat* FormatWithEnding(std::string_view ending) {
  const std::string lowercase = Lowercase(ending);
  const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [&](const CaptionFormat& format) { return format.ending == lowercase; });
  return found == std::end(kFormats) ? nullptr : found;
}

Conversion ToDocument(std::string bytes, const CaptionFormat& format, const TrackFacts& facts) {
  static std::mutex largeFiles;
  std::unique_lock lock(largeFiles, std::defer_lock);
  if (bytes.size() > kLargeFile) lock.lock();
  return Convert(std::move(bytes), format, facts);
}

}  // namespace gateway
