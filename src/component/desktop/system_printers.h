// Printers and papers as the system and the toolkit have them, in the terms of the print service.
#pragma once

#include <QList>
#include <QPageLayout>
#include <QPageSize>
#include <QString>

#include "platform/print_service.h"

class QPrinter;

namespace zel {

QPageLayout::Orientation layoutOrientation(PageOrientation orientation);
PageOrientation orientationOf(const QPageLayout& layout);

// Whether the page of this printer goes into a file.
bool goesIntoFile(const QPrinter& printer);
// Whether the system has a printer of that name now. The toolkit knows none before there is an application.
bool isPrinter(const QString& name);

// Whether a printer of that name takes that paper; for another name, whether it is offered for a file.
bool takesPaper(const QString& printer, const QPageSize& size);

// As it lies in the printer, with the margins that the printer needs; a file needs none.
PaperFormat paperOf(const QPrinter& printer);
QPageSize pageSizeOf(const PaperFormat& paper);
// The paper of a page in a file when nobody has chosen one: Letter where the user's locale has it, else A4.
PaperFormat localPaper(PageOrientation orientation);
// The paper that lies in a printer of that name; for another name that of a file.
QPageSize usualSize(const QString& printer);
// The papers that a printer of that name takes; for another name those that are offered for a file.
QList<QPageSize> sizesOf(const QString& printer);

}  // namespace zel
