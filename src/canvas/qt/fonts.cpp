#include "canvas/qt/fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QList>
#include <QStringList>
#include <algorithm>

namespace zel {
namespace {

// The toolkit lists these whatever there is.
bool isAlias(const QString& family) {
  return family == QLatin1String("Monospace") || family == QLatin1String("Sans Serif") ||
         family == QLatin1String("Serif");
}

bool hasFamilies() {
  // Looked for until there is one.
  static bool found = false;
  if (!found) {
    const QStringList families = QFontDatabase::families();
    found = !std::all_of(families.begin(), families.end(), isAlias);
  }
  return found;
}

bool standsAlone(char32_t character) {
  switch (QChar::script(character)) {
    case QChar::Script_Common:
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
    case QChar::Script_Unknown:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool fontsAreThere() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr && hasFamilies();
}

QFont fontForText(QFont font, const QString& text) {
  const int strategy = font.styleStrategy();
  if ((strategy & QFont::PreferNoShaping) == 0) return font;
  const auto characters = text.toUcs4();
  if (!std::all_of(characters.begin(), characters.end(), standsAlone))
    font.setStyleStrategy(static_cast<QFont::StyleStrategy>(strategy & ~QFont::PreferNoShaping));
  return font;
}

}  // namespace zel
