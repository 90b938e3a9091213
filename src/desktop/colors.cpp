#include "desktop/colors.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLegible = 4.5;

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// color on its way to white, from 0 to 1.
QColor lighter(const QColor& color, double share) {
  const auto mix = [share](int channel) {
    return channel + static_cast<int>(std::lround((255 - channel) * share));
  };
  return {mix(color.red()), mix(color.green()), mix(color.blue())};
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
  const auto [darker, brighter] = std::minmax({luminance(one), luminance(other)});
  return (brighter + 0.05) / (darker + 0.05);
}

bool isDark(const QColor& background) {
  return contrast(background, Qt::white) > contrast(background, Qt::black);
}

QColor legibleOn(const QColor& background, const QColor& told) {
  if (!isDark(background)) return told;
  for (double share = 0; share < 1; share += 0.02) {
    const QColor color = lighter(told, share);
    if (contrast(color, background) >= kLegible) return color;
  }
  return Qt::white;
}
