#include "app/Window1.h"
#include "conversion.h"
#include "runtime/Streams.h"
#include "timedtext/TimedText.h"
#include "timedtext/captions.h"
#include "timedtext/transcript.h"

namespace {

std::string CaptionFile(Window1& window, const std::string& document, bool webVTT) {
  const Captions captions = FormCaptions(CutTimedText(window, document));
  const auto file = std::make_shared<MemoryBlock>(0);
  file->Bytes().reserve(document.size());
  TextOutputStream out(file);
  webVTT ? WriteVTT(out, captions) : WriteSRT(out, captions);
  out.Close();
  return std::move(file->Bytes());
}

std::string Transcript(Window1& window, const std::string& document) {
  FormTranscript(window, CutTimedText(window, document));
  return window.TextArea1.Text();
}

}  // namespace

const char* NameOf(Form form) {
  constexpr const char* kNames[] = {"SRT", "WebVTT", "lines with timecode", "lines", "paragraph"};
  return kNames[static_cast<std::size_t>(form)];
}

std::string ConvertByUs(Window1& window, const std::string& document, Form form) {
  if (form == Form::SRT || form == Form::WebVTT) return CaptionFile(window, document, form == Form::WebVTT);
  window.lineBox.SetValue(form != Form::Paragraph);
  window.timecodeBox.SetValue(form == Form::StampedLines);
  return Transcript(window, document);
}
