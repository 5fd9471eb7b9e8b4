// What other programs read in a PDF: text, fonts, pictures, pages (package poppler-utils).
//
//     if (!test::missingPdfTool().empty()) GTEST_SKIP() << ...
//     const test::PdfFile file(bytes);
//     file.text() ...
#pragma once

#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "support/temporary_folder.h"

namespace zel::test {

// Why the tools cannot be asked; empty when all are installed.
inline std::string missingPdfTool() {
  for (const char* tool : {"pdftotext", "pdftoppm", "pdffonts", "pdfinfo", "pdfimages"})
    if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
      return "the test needs " + std::string(tool) + " (package poppler-utils)";
  return {};
}

inline std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

class PdfFile {
 public:
  explicit PdfFile(const std::string& bytes) : path_(QString::fromStdString(folder_ / "page.pdf")) {
    writeBytes(folder_ / "page.pdf", bytes);
  }

  // Of one page from 1 on, or of all (0). Layout: columns stand side by side as on the page.
  std::string text(int page = 0, bool layout = true) const {
    QStringList arguments{QStringLiteral("-enc"), QStringLiteral("UTF-8"), QStringLiteral("-nopgbrk")};
    if (layout) arguments << QStringLiteral("-layout");
    if (page > 0) arguments << pageArguments(page);
    return output("pdftotext", arguments << path_ << QStringLiteral("-"));
  }
  // "Page size", "Title", ...: the rest of that line.
  std::string info(const std::string& name) const {
    for (const std::string& line : linesOf(output("pdfinfo", {path_})))
      if (line.starts_with(name + ":")) return line.substr(line.find_first_not_of(' ', name.size() + 1));
    return {};
  }
  // A line for each, without the head of the table.
  std::vector<std::string> fonts() const { return tableRows(output("pdffonts", {path_})); }
  std::vector<std::string> images() const {
    return tableRows(output("pdfimages", {QStringLiteral("-list"), path_}));
  }
  QImage picture(int dotsPerInch, int page = 1) const {
    const QString stem = QString::fromStdString(folder_ / "picture");
    output("pdftoppm",
           QStringList{QStringLiteral("-r"), QString::number(dotsPerInch), QStringLiteral("-singlefile")}
               << pageArguments(page) << path_ << stem);
    const QImage image(stem + QStringLiteral(".ppm"));
    if (image.isNull()) throw std::runtime_error("pdftoppm made no picture");
    return image.convertToFormat(QImage::Format_RGB32);
  }

 private:
  static QStringList pageArguments(int page) {
    return {QStringLiteral("-f"), QString::number(page), QStringLiteral("-l"), QString::number(page)};
  }
  static std::vector<std::string> tableRows(const std::string& table) {
    std::vector<std::string> rows = linesOf(table);
    rows.erase(rows.begin(), rows.begin() + std::min<std::ptrdiff_t>(2, std::ssize(rows)));
    return rows;
  }
  static std::string output(const char* program, const QStringList& arguments) {
    QProcess process;
    process.start(QString::fromLatin1(program), arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
      throw std::runtime_error(std::string(program) + ": " + process.readAllStandardError().toStdString());
    return process.readAllStandardOutput().toStdString();
  }

  TemporaryFolder folder_;
  QString path_;
};

}  // namespace zel::test
