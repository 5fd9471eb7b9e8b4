// What there is to draw texts with.
#pragma once

#include <QFont>
#include <QString>

namespace zel {

// Texts need a graphical application and a font on the system. Without a font the toolkit draws black bars.
bool fontsAreThere();

// The font for one text. One that keeps its letters apart, so that who copies "fi" gets both, joins them in
// scripts that are written so.
QFont fontForText(QFont font, const QString& text);

}  // namespace zel
