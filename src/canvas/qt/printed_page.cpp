#include "canvas/qt/printed_page.h"

#include <QFont>
#include <QStringList>
#include <algorithm>

#include "platform/paper.h"

namespace zel {
namespace {

constexpr double kTwipsPerPixel = kTwipsPerInch / PictureCanvas::kPixelsPerInch;
constexpr double kSheetPoints = 10;
constexpr double kBoxPoints = 8;

QFont pageFont(double points) {
  QFont font;
  font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans"),
                    QStringLiteral("Arial"), QStringLiteral("DejaVu Sans")});
  font.setStyleHint(QFont::SansSerif);
  // Without shaping "fi" stays two letters for whoever copies or searches the text.
  font.setStyleStrategy(static_cast<QFont::StyleStrategy>(QFont::ForceOutline | QFont::PreferNoShaping));
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setPointSizeF(std::max(points, 1 / kTwipsPerPoint));
  return font;
}

}  // namespace

PrintedPage::PrintedPage(double width, double height)
    : width_(width),
      height_(height),
      sheet_(QSizeF(width / kTwipsPerPixel, height / kTwipsPerPixel), PaperTexts::kInPlace) {
  setFontSize(kSheetPoints);
}

void PrintedPage::setFontSize(double points) { sheet_.setFont(pageFont(points)); }

VectorCanvas& PrintedPage::box(double left, double top, double right, double bottom) {
  boxes_.push_back(sheet_.inset({left, top}, {right, bottom}));
  boxes_.back()->setFont(pageFont(kBoxPoints));
  return *boxes_.back();
}

}  // namespace zel
