#include "import/xml_walk.h"

#include <QBuffer>
#include <QByteArray>
#include <QLatin1String>
#include <QString>
#include <QXmlStreamReader>
#include <algorithm>
#include <vector>

#include "import/station_collector.h"

namespace zel::host {
namespace {

std::size_t linesIn(std::string_view text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

std::string atLine(std::size_t line, const std::string& text) {
  return "line " + std::to_string(line) + ": " + text;
}

bool startsWith(std::string_view text, std::size_t at, std::string_view start) {
  return text.substr(at, start.size()) == start;
}

// Behind the end mark; npos when there is none.
std::size_t behind(std::string_view text, std::size_t at, std::string_view mark) {
  const std::size_t end = text.find(mark, at);
  return end == std::string_view::npos ? end : end + mark.size();
}

// Behind the ">" that is in no quotes; npos when the text ends before, or the tag is too long.
std::size_t behindTag(std::string_view text, std::size_t at) {
  char quote = 0;
  const std::size_t end = std::min(text.size(), at + kLongestTag);
  for (; at < end; ++at) {
    const char c = text[at];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '>') {
      return at + 1;
    } else if (c == '"' || c == '\'') {
      quote = c;
    }
  }
  return std::string_view::npos;
}

// What would cost the reader time or memory out of proportion. Whether the rest is well-formed, it tells.
std::string markupProblem(std::string_view text) {
  std::size_t at = text.find('<');
  while (at != std::string_view::npos && at < text.size()) {
    std::size_t next = 0;
    if (startsWith(text, at, "<!--")) {
      next = behind(text, at + 4, "-->");
    } else if (startsWith(text, at, "<![CDATA[")) {
      next = behind(text, at, "]]>");
    } else if (startsWith(text, at, "<?")) {
      next = behind(text, at, "?>");
    } else if (startsWith(text, at, "<!")) {
      return atLine(linesIn(text.substr(0, at)) + 1,
                    "there is a document type with definitions of its own, which is not read");
    } else {
      next = behindTag(text, at);
      if (next == std::string_view::npos && text.size() - at > kLongestTag)
        return atLine(linesIn(text.substr(0, at)) + 1,
                      "a tag is longer than " + std::to_string(kLongestTag >> 10) + " KiB");
    }
    if (next == std::string_view::npos) break;
    at = text.find('<', next);
  }
  return {};
}

// The text is UTF-8 by now, whatever its declaration says.
std::string_view withoutDeclaration(std::string_view text, std::size_t& lines) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  const std::size_t end = begin != std::string_view::npos && startsWith(text, begin, "<?xml")
                              ? behind(text, begin, "?>")
                              : std::string_view::npos;
  const std::size_t skipped = end == std::string_view::npos ? 0 : end;
  lines = linesIn(text.substr(0, skipped));
  return text.substr(skipped);
}

std::string utf8(QStringView text) { return text.toUtf8().toStdString(); }

class Walk {
 public:
  Walk(std::string_view text, std::size_t lines, XmlListener& listener, StationCollector& collector)
      : lines_(lines),
        size_(static_cast<double>(text.size()) + 1),
        bytes_(QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()))),
        buffer_(&bytes_),
        listener_(listener),
        collector_(collector) {
    buffer_.open(QIODevice::ReadOnly);
    reader_.setDevice(&buffer_);
    // Programs write prefixes that they never declare.
    reader_.setNamespaceProcessing(false);
  }

  std::string run() {
    while (!reader_.atEnd()) {
      if (!collector_.advance(static_cast<double>(reader_.characterOffset()) / size_)) return {};
      const auto token = reader_.readNext();
      if (token == QXmlStreamReader::StartElement && !start())
        return atLine(line(), "elements are nested deeper than " + std::to_string(kDeepestElement));
      if (token == QXmlStreamReader::Characters) text_ += reader_.text();
      if (token == QXmlStreamReader::EndElement) end();
    }
    if (!reader_.hasError()) return {};
    return atLine(line(), "the XML is damaged: " + utf8(reader_.errorString()));
  }

 private:
  std::size_t line() const { return lines_ + static_cast<std::size_t>(reader_.lineNumber()); }
  std::string parent() const { return open_.empty() ? std::string() : open_.back(); }

  bool start() {
    text_.clear();
    const std::string name = utf8(reader_.name());
    const QXmlStreamAttributes attributes = reader_.attributes();
    listener_.start(
        name, parent(), [&attributes](const char* key) { return utf8(attributes.value(QLatin1String(key))); },
        line());
    open_.push_back(name);
    return open_.size() <= kDeepestElement;
  }

  void end() {
    const std::string name = std::move(open_.back());
    open_.pop_back();
    listener_.end(name, parent(), utf8(text_));
    text_.clear();
  }

  std::size_t lines_;
  double size_;
  QByteArray bytes_;
  QBuffer buffer_;
  QXmlStreamReader reader_;
  XmlListener& listener_;
  StationCollector& collector_;
  std::vector<std::string> open_;
  QString text_;
};

}  // namespace

std::string rootElement(std::string_view text) {
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
    if (startsWith(text, at, "<!--")) {
      at = behind(text, at + 4, "-->");
    } else if (startsWith(text, at, "<?") || startsWith(text, at, "<!")) {
      at = behind(text, at, ">");
    } else {
      std::string_view name = text.substr(at + 1, kLongestTag);
      name = name.substr(0, name.find_first_of(" \t\r\n/>"));
      const std::size_t colon = name.find(':');
      return std::string(colon == std::string_view::npos ? name : name.substr(colon + 1));
    }
    if (at == std::string_view::npos) break;
  }
  return {};
}

std::string walkXml(std::string_view text, XmlListener& listener, StationCollector& collector) {
  if (std::string problem = markupProblem(text); !problem.empty()) return problem;
  std::size_t lines = 0;
  const std::string_view body = withoutDeclaration(text, lines);
  return Walk(body, lines, listener, collector).run();
}

}  // namespace zel::host
