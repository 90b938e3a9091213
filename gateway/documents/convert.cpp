#include "gateway/documents/convert.h"

#include <array>

namespace gateway {
namespace {

constexpr std::array<CaptionFormat, 1> kFormats{{{"srv1"}}};

}  // namespace

std::span<const CaptionFormat> CaptionFormats() { return kFormats; }

}  // namespace gateway
