#include "conversion.h"
#include "runtime/Streams.h"
#include "timedtext/formats.h"
#include "timedtext/transcript.h"

namespace {

SharedText CaptionFile(std::string document, bool webVTT) {
  const auto file = std::make_shared<MemoryBlock>(0);
  file->Bytes().reserve(document.size());
  const Captions captions = FormCaptions(TimedText::From(std::move(document)));
  TextOutputStream out(file);
  webVTT ? WriteVTT(out, captions) : WriteSRT(out, captions);
  out.Close();
  return std::make_shared<const std::string>(std::move(file->Bytes()));
}

}  // namespace

const char* NameOf(Form form) {
  constexpr const char* kNames[] = {"SRT", "WebVTT", "lines with timecode", "lines", "paragraph"};
  return kNames[static_cast<std::size_t>(form)];
}

std::string TranscriptOf(const TimedText& track, Form form) {
  return Transcript(track, [form]() -> TranscriptForm {
    return {form != Form::Paragraph, form == Form::StampedLines};
  });
}

SharedText ConvertByUs(std::string document, Form form) {
  if (form == Form::SRT || form == Form::WebVTT)
    return CaptionFile(std::move(document), form == Form::WebVTT);
  return std::make_shared<const std::string>(TranscriptOf(TimedText::From(std::move(document)), form));
}
