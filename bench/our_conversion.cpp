#include "app/Window1.h"
#include "conversion.h"
#include "runtime/Streams.h"
#include "timedtext/TimedText.h"
#include "timedtext/captions.h"
#include "timedtext/transcript.h"

namespace {

SharedText CaptionFile(Window1& window, std::string document, bool webVTT) {
  const auto file = std::make_shared<MemoryBlock>(0);
  file->Bytes().reserve(document.size());
  const Captions captions = FormCaptions(CutTimedText(window, std::move(document)));
  TextOutputStream out(file);
  webVTT ? WriteVTT(out, captions) : WriteSRT(out, captions);
  out.Close();
  return std::make_shared<const std::string>(std::move(file->Bytes()));
}

SharedText Transcript(Window1& window, std::string document) {
  FormTranscript(window, CutTimedText(window, std::move(document)));
  return window.TextArea1.Share();
}

}  // namespace

const char* NameOf(Form form) {
  constexpr const char* kNames[] = {"SRT", "WebVTT", "lines with timecode", "lines", "paragraph"};
  return kNames[static_cast<std::size_t>(form)];
}

void ChooseForm(Window1& window, Form form) {
  window.lineBox.SetValue(form != Form::Paragraph);
  window.timecodeBox.SetValue(form == Form::StampedLines);
}

SharedText ConvertByUs(Window1& window, std::string document, Form form) {
  ChooseForm(window, form);
  const bool isFile = form == Form::SRT || form == Form::WebVTT;
  return isFile ? CaptionFile(window, std::move(document), form == Form::WebVTT)
                : Transcript(window, std::move(document));
}
