#include "preferences/coverage_view.h"

#include <QCheckBox>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "map/graticule.h"
#include "map/map_frame.h"
#include "zel/settings.h"

namespace zel::host {
namespace {

constexpr double kMargin = 24;  // pixels around the rasters
constexpr TerrainExtent kWorld{-kMapLatitudeLimit, -180, kMapLatitudeLimit, 180};
constexpr int kTintOpacity = 60;      // of 255
constexpr double kWorldPixels = 256;  // of the world's side at level 0
constexpr double kLeastOutline = 3;   // pixels: a raster is seen at any scale
constexpr int kMostListedProblems = 1000;

// "36.16 N": two decimals of a degree are enough to know a raster by.
QString degreesText(double degrees, QChar positive, QChar negative) {
  return QString::number(std::abs(degrees), 'f', 2) + u' ' + (degrees < 0 ? negative : positive);
}

double longitudeWithin(double longitude) {
  while (longitude > 180) longitude -= 360;
  while (longitude < -180) longitude += 360;
  return longitude;
}

QString extentText(const TerrainExtent& extent) {
  return QStringLiteral("%1 to %2, %3 to %4")
      .arg(degreesText(extent.south, u'N', u'S'), degreesText(extent.north, u'N', u'S'),
           degreesText(longitudeWithin(extent.west), u'E', u'W'),
           degreesText(longitudeWithin(extent.east), u'E', u'W'));
}

// All of them, each taken at the turn of longitude that is nearest to the first.
TerrainExtent wholeExtent(const std::vector<TerrainCoverage>& rasters) {
  TerrainExtent whole = rasters.front().extent;
  const double middle = (whole.west + whole.east) / 2;
  for (const TerrainCoverage& raster : rasters) {
    const double turns = std::round((middle - (raster.extent.west + raster.extent.east) / 2) / 360) * 360;
    whole.south = std::min(whole.south, raster.extent.south);
    whole.north = std::max(whole.north, raster.extent.north);
    whole.west = std::min(whole.west, raster.extent.west + turns);
    whole.east = std::max(whole.east, raster.extent.east + turns);
  }
  return whole;
}

}  // namespace

class CoverageView::Canvas final : public QWidget {
 public:
  explicit Canvas(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("mapCoverage"));
    setAccessibleName(QStringLiteral("Coverage"));
    setToolTip(QStringLiteral("Outlines of the source's rasters; the arrow keys go from one to the next"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }

  QSize minimumSizeHint() const override { return {200, 110}; }
  QSize sizeHint() const override { return {420, 170}; }

  void setRasters(std::vector<TerrainCoverage> rasters) {
    rasters_ = std::move(rasters);
    chosen_ = -1;
    update();
  }
  const std::vector<TerrainCoverage>& rasters() const { return rasters_; }
  void setWorld(bool world) {
    world_ = world;
    update();
  }
  QString chosenText() const { return chosen_ < 0 ? QString() : textOf(static_cast<std::size_t>(chosen_)); }

  std::function<void()> onChosen;

 protected:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int raster = rasterAt(help->pos());
    QToolTip::showText(help->globalPos(), raster < 0 ? toolTip() : textOf(static_cast<std::size_t>(raster)),
                       this);
    return true;
  }

  void mousePressEvent(QMouseEvent* event) override { choose(rasterAt(event->position().toPoint())); }

  void keyPressEvent(QKeyEvent* event) override {
    const int step = event->key() == Qt::Key_Right || event->key() == Qt::Key_Down ? 1
                     : event->key() == Qt::Key_Left || event->key() == Qt::Key_Up  ? -1
                                                                                   : 0;
    const int count = static_cast<int>(rasters_.size());
    if (step == 0 || count == 0) {
      QWidget::keyPressEvent(event);
      return;
    }
    choose(chosen_ < 0 ? (step > 0 ? 0 : count - 1) : (chosen_ + step + count) % count);
  }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QPalette colours = palette();
    painter.fillRect(rect(), colours.color(QPalette::Base));
    const MapFrame frame = shownFrame();
    drawGraticule(painter, frame);

    const QColor outline = colours.color(QPalette::Highlight);
    QColor tint = outline;
    tint.setAlpha(kTintOpacity);
    painter.setPen(outline);
    painter.setBrush(tint);
    for (const TerrainCoverage& raster : rasters_) painter.drawRect(outlineOf(frame, raster.extent));
    if (chosen_ >= 0) {
      painter.setPen(QPen(colours.color(QPalette::Text), 2));
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(outlineOf(frame, rasters_[static_cast<std::size_t>(chosen_)].extent));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(colours.color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }

  void focusInEvent(QFocusEvent* event) override {
    QWidget::focusInEvent(event);
    update();
  }
  void focusOutEvent(QFocusEvent* event) override {
    QWidget::focusOutEvent(event);
    update();
  }

 private:
  MapFrame shownFrame() const {
    MapFrame frame(width(), height());
    if (world_ || rasters_.empty())
      frame.fit(kWorld, 0);
    else
      frame.fit(wholeExtent(rasters_), kMargin);
    return frame;
  }

  QRectF outlineOf(const MapFrame& frame, const TerrainExtent& extent) const {
    const double perDegree = kWorldPixels * std::exp2(frame.level()) / 360;
    const double middle = (extent.west + extent.east) / 2;
    const MapPoint top = frame.pixelOf({extent.north, longitudeWithin(middle)});
    const MapPoint bottom = frame.pixelOf({extent.south, longitudeWithin(middle)});
    const double width = std::max((extent.east - extent.west) * perDegree, kLeastOutline);
    const double height = std::max(bottom.y - top.y, kLeastOutline);
    return {top.x - width / 2, (top.y + bottom.y - height) / 2, width, height};
  }

  void drawGraticule(QPainter& painter, const MapFrame& frame) const {
    const int textHeight = fontMetrics().height();
    QColor faint = palette().color(QPalette::Text);
    faint.setAlpha(kTintOpacity);
    for (const GraticuleLine& line : graticule(frame, AngleFormat::kDecimalDegrees)) {
      painter.setPen(faint);
      if (line.meridian)
        painter.drawLine(QPointF(line.pixel, 0), QPointF(line.pixel, height()));
      else
        painter.drawLine(QPointF(0, line.pixel), QPointF(width(), line.pixel));
      painter.setPen(palette().color(QPalette::Text));
      const QString text = QString::fromStdString(line.text);
      const int length = fontMetrics().horizontalAdvance(text);
      // Whole, or not at all.
      if (line.meridian && line.pixel + 3 + length < width())
        painter.drawText(QPointF(line.pixel + 3, height() - 4), text);
      if (!line.meridian && line.pixel > textHeight + 2 && line.pixel < height() - textHeight)
        painter.drawText(QPointF(4, line.pixel - 3), text);
    }
  }

  // The smallest one there: a large one would hide those within it.
  int rasterAt(QPoint place) const {
    const MapFrame frame = shownFrame();
    int found = -1;
    double least = 0;
    for (std::size_t i = 0; i < rasters_.size(); ++i) {
      const QRectF outline = outlineOf(frame, rasters_[i].extent);
      const double area = outline.width() * outline.height();
      if (!outline.contains(place) || (found >= 0 && area >= least)) continue;
      found = static_cast<int>(i);
      least = area;
    }
    return found;
  }

  QString textOf(std::size_t index) const {
    return QString::fromStdString(rasters_[index].path) + u'\n' + extentText(rasters_[index].extent);
  }

  void choose(int raster) {
    chosen_ = raster;
    update();
    if (onChosen) onChosen();
  }

  std::vector<TerrainCoverage> rasters_;
  bool world_ = false;
  int chosen_ = -1;
};

CoverageView::CoverageView(QWidget* parent)
    : QWidget(parent), search_([this](const Coverage& coverage) { showCoverage(coverage); }) {
  setObjectName(QStringLiteral("coverage"));
  canvas_ = new Canvas(this);
  auto* label = new QLabel(QStringLiteral("Co&verage"), this);
  label->setBuddy(canvas_);
  world_ = new QCheckBox(QStringLiteral("&Whole world"), this);
  world_->setObjectName(QStringLiteral("chkWorld"));
  world_->setAccessibleName(QStringLiteral("Whole world"));
  world_->setToolTip(QStringLiteral("Show the outlines on the whole world"));
  words_ = new QLabel(this);
  words_->setObjectName(QStringLiteral("lblCoverage"));
  words_->setWordWrap(true);
  words_->setTextFormat(Qt::PlainText);
  words_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  problems_ = new QListWidget(this);
  problems_->setObjectName(QStringLiteral("lstProblems"));
  problems_->setAccessibleName(QStringLiteral("Rasters that cannot be used"));
  problems_->setToolTip(QStringLiteral("Rasters and folders that cannot be used, and why"));
  problems_->setWordWrap(true);
  problems_->setFixedHeight(4 * fontMetrics().height());
  problemsLabel_ = new QLabel(QStringLiteral("Ca&nnot be used"), this);
  problemsLabel_->setBuddy(problems_);
  setTabOrder(problems_, canvas_);
  setTabOrder(canvas_, world_);

  auto* head = new QHBoxLayout;
  head->addWidget(label);
  head->addStretch(1);
  head->addWidget(world_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  // What is wrong comes first: under the map it would be out of sight in a low window.
  layout->addWidget(problemsLabel_);
  layout->addWidget(problems_);
  layout->addLayout(head);
  layout->addWidget(canvas_, 1);
  layout->addWidget(words_);
  problemsLabel_->hide();
  problems_->hide();
  connect(world_, &QCheckBox::toggled, this, [this](bool world) { canvas_->setWorld(world); });
  canvas_->onChosen = [this] { tell(); };
}

CoverageView::~CoverageView() = default;

void CoverageView::showSource(int code) {
  looking_ = true;
  failure_.clear();
  canvas_->setRasters({});
  problems_->hide();
  problemsLabel_->hide();
  try {
    search_.start(code);
  } catch (const std::exception& problem) {
    looking_ = false;
    failure_ = QString::fromUtf8(problem.what());
  }
  tell();
}

void CoverageView::setUnstoredEdits(bool unstored) {
  if (std::exchange(unstored_, unstored) != unstored) tell();
}

void CoverageView::showCoverage(const Coverage& coverage) {
  looking_ = false;
  canvas_->setRasters(coverage.rasters);
  problems_->clear();
  for (const std::string& problem : coverage.problems) {
    if (problems_->count() == kMostListedProblems) {
      problems_->addItem(QStringLiteral("and %1 more")
                             .arg(coverage.problems.size() - static_cast<std::size_t>(kMostListedProblems)));
      break;
    }
    problems_->addItem(QString::fromStdString(problem));
  }
  problems_->setVisible(problems_->count() > 0);
  problemsLabel_->setVisible(problems_->count() > 0);
  tell();
}

void CoverageView::tell() {
  QString text;
  const std::size_t count = canvas_->rasters().size();
  if (looking_)
    text = QStringLiteral("Looking ...");
  else if (!failure_.isEmpty())
    text = failure_;
  else if (!canvas_->chosenText().isEmpty())
    text = canvas_->chosenText();
  else if (count == 0)
    text = QStringLiteral("No raster can be used.");
  else
    text = QStringLiteral("%1, %2.").arg(
        count == 1 ? QStringLiteral("1 raster") : QStringLiteral("%1 rasters").arg(count),
        extentText(wholeExtent(canvas_->rasters())));
  if (unstored_)
    text += QStringLiteral("\nThis is the coverage as stored: Apply shows that of the list above.");
  words_->setText(text);
  canvas_->setAccessibleDescription(text);
}

}  // namespace zel::host
