// The text transcript: a paragraph, or lines with or without timecodes, as the boxes of the form say.
#pragma once

class TimedText;
class Window1;

// Puts the transcript of a track into the form's TextArea1. The boxes are read for each cue, so that
// a change during the run takes effect at the next one. Yields after each cue.
void FormTranscript(Window1& form, const TimedText& track);
