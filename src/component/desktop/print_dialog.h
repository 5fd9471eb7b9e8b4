// The printer dialog: the toolkit's, with what means something for one page: printer or PDF file, copies,
// paper and orientation. Without any printer it prints to a PDF file. A file name that does not end in ".pdf"
// gets it, and the dialog asks itself before a file is overwritten.
#pragma once

#include <QString>

class QPrinter;

namespace zel {

// Begins as the printer is set up, and sets it up as it is left. False when the user cancels, and when the
// dialog goes with the window that it belongs to: the printer is not to be used then.
bool runPrintDialog(QPrinter& printer);

// The file that it offers first.
QString defaultPdfFile();

}  // namespace zel
