#include "desktop/shown_text.h"

namespace {

constexpr qsizetype kLongestRun = 80;
constexpr QChar kReplacement(0xFFFD);
constexpr QChar kZeroWidthSpace(0x200B);

bool isControl(char16_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029 || c == 0xFEFF;
}

// An override makes "gpj.exe" appear as "exe.jpg".
bool isOverride(char16_t c) { return c == 0x202D || c == 0x202E; }

// Marks, embeddings and isolates: common and harmless in captions, and useless in a single line.
bool isDirectional(char16_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202C) ||
         (c >= 0x2066 && c <= 0x2069);
}

// Decodes only as many bytes as atMost characters can take.
QString decoded(std::string_view bytes, qsizetype atMost) {
  const auto most = static_cast<std::size_t>(atMost) * 4 + 4;
  const bool cut = bytes.size() > most;
  QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(cut ? most : bytes.size()));
  if (cut) text.append(QChar(u'\u2026'));
  return text;
}

QChar shownCharacter(QChar c, Lines lines) {
  if (c == u'\n') return lines == Lines::Many ? c : QChar(u' ');
  if (c == u'\t') return QChar(u' ');
  return isControl(c.unicode()) || isOverride(c.unicode()) ? kReplacement : c;
}

}  // namespace

QString shownText(std::string_view bytes, Lines lines, qsizetype atMost) {
  QString text = decoded(bytes, atMost);
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QChar(u'\r'), QChar(u'\n'));
  QString shown;
  shown.reserve(text.size());
  for (const QChar c : text) {
    if (!isDirectional(c.unicode())) shown.append(shownCharacter(c, lines));
  }
  if (shown.size() <= atMost) return shown;
  shown.truncate(shown.at(atMost - 1).isHighSurrogate() ? atMost - 1 : atMost);
  return shown.append(QChar(u'\u2026'));
}

QString plainToolTip(const QString& shown) {
  QString escaped = withBreaks(shown).toHtmlEscaped();
  return QStringLiteral("<p>%1</p>").arg(escaped.replace(QChar(u'\n'), QStringLiteral("<br>")));
}

QString withBreaks(const QString& text) {
  QString broken;
  qsizetype run = 0;
  for (const QChar c : text) {
    run = c.isSpace() ? 0 : run + 1;
    if (run > kLongestRun && !c.isLowSurrogate()) {
      broken.append(kZeroWidthSpace);
      run = 1;
    }
    broken.append(c);
  }
  return broken;
}
