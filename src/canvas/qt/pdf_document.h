// A page as the bytes of a PDF: vectors, texts that can be selected and searched, embedded fonts.
#pragma once

#include <string>

#include "canvas/qt/printed_page.h"
#include "platform/print_service.h"

namespace zel {

// One page for each copy, 1 or more. Throws RuntimeError PrintService::kPrinterFailed when it cannot be made.
std::string pdfDocument(const PrintedPage& page, int copies, const PrintedDocument& document);

}  // namespace zel
