// The addresses that the program uses, fixed when it is built. A packager sets others by the CMake cache
// variables of the same names (RAVELYN_TRACK_LIST_ENDPOINT and so on). Nothing changes them at run time in
// the product; tools and tests give App a struct of their own.
#pragma once

#include <string>

struct Endpoints {
  // Host and port of the two caption requests: the gateway on this machine, since they are not encrypted.
  std::string TrackListEndpoint = RAVELYN_TRACK_LIST_ENDPOINT;
  std::string TimedTextEndpoint = RAVELYN_TIMED_TEXT_ENDPOINT;
  std::string ShortLinkHost = RAVELYN_SHORT_LINK_HOST;  // ends with ".be"; short links are cut after it
  std::string WatchPageBase = RAVELYN_WATCH_PAGE_BASE;  // host of the page that plays a video
  std::string ProbeAddress = RAVELYN_PROBE_ADDRESS;     // pinged when the form opens
  std::string ProductPage = RAVELYN_PRODUCT_PAGE;       // without scheme
  std::string SampleCode = RAVELYN_SAMPLE_CODE;         // the video of the example on the form

  // The page that plays the video with this code, as a link.
  std::string WatchPage(const std::string& code) const {
    return "https://" + WatchPageBase + "/watch?v=" + code;
  }
};

// What the About window shows.
inline constexpr char kVersion[] = RAVELYN_VERSION;
