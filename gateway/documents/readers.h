// The readers, one for each format; see CaptionFormat::read.
#pragma once

#include <string>

namespace gateway {

class Cues;

std::string ReadSrv1(std::string text, Cues& cues);
std::string ReadSrv2(std::string text, Cues& cues);
std::string ReadSrv3(std::string text, Cues& cues);
std::string ReadJson3(std::string text, Cues& cues);
std::string ReadTtml(std::string text, Cues& cues);
std::string ReadVtt(std::string text, Cues& cues);
std::string ReadSrt(std::string text, Cues& cues);

}  // namespace gateway
