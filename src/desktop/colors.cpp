#include "desktop/colors.h"

#include <algorithm>
#include <cmath>

namespace {

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// share 0 is color, 1 is other.
QColor mixed(const QColor& color, const QColor& other, double share) {
  const auto mix = [share](int from, int to) {
    return from + static_cast<int>(std::lround((to - from) * share));
  };
  return {mix(color.red(), other.red()), mix(color.green(), other.green()), mix(color.blue(), other.blue())};
}

bool isDark(const QColor& background) {
  return contrast(background, Qt::white) > contrast(background, Qt::black);
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
  const auto [darker, brighter] = std::minmax({luminance(one), luminance(other)});
  return (brighter + 0.05) / (darker + 0.05);
}

QColor legibleOn(const QColor& background, const QColor& color, double least) {
  const QColor farthest = isDark(background) ? Qt::white : Qt::black;
  for (double share = 0; share < 1; share += 0.02) {
    const QColor tried = mixed(color, farthest, share);
    if (contrast(tried, background) >= least) return tried;
  }
  return farthest;
}

QColor mutedOn(const QColor& background, const QColor& text, double least) {
  return legibleOn(background, mixed(background, text, 0.5), least);
}
