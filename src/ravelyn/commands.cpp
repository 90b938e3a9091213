#include "ravelyn/commands.h"

#include "prefs/prefsModule.h"
#include "timedtext/download.h"
#include "timedtext/timecode.h"
#include "tracks/search.h"
#include "wordsearch/word_search.h"

const Commands kCommands = {
    .Search = Search,
    .Download = Download,
    .SearchWords = SearchWords,
    .DownloadTrack = DownloadTrack,
    .SearchTrack = SearchTrack,
    .getPrefs = prefsModule::getPrefs,
    .savePrefs = prefsModule::savePrefs,
    .SecsToTimecode = SecsToTimecode,
    .returnTimecodeSRT = returnTimecodeSRT,
    .timecodeToSecs = timecodeToSecs,
};
