// The public printed page: the window's page routine over a view without a window.
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "canvas/qt/pdf_document.h"
#include "canvas/qt/printed_page.h"
#include "canvas/recording_canvas.h"
#include "component/api/model_inputs.h"
#include "component/api/ready_component.h"
#include "component/api/windowless_view.h"
#include "component/services/output_file.h"
#include "foundation/number_text.h"
#include "foundation/utf8.h"
#include "platform/print_service.h"
#include "profile/path_loss/modeled_loss.h"
#include "ui/page/page_content.h"
#include "ui/page/page_drawing.h"
#include "ui/page/page_origin.h"
#include "ui/page/wrap_text.h"
#include "zel/path_export.h"
#include "zel/path_page.h"

namespace zel {
namespace {

static_assert(kMostPageCopies == PrintService::kMostCopies);

constexpr double kTwipsToMm = 25.4 / kTwipsPerInch;

PaperFormat paperOf(const PathPageRequest& request) {
  const PaperFormat paper = request.paper == PagePaper::kLetter ? letterPaper() : a4Paper();
  return lying(paper, request.landscape ? PageOrientation::kLandscape : PageOrientation::kPortrait);
}

// In valid UTF-8, so that it can be printed.
struct Printable {
  std::string text;
  bool replaced = false;  // bytes that are no UTF-8, by U+FFFD
};

Printable printable(std::string_view text) {
  Printable result;
  result.text.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
    if (length == 0) {
      result.text += "\xEF\xBF\xBD";
      result.replaced = true;
    } else {
      result.text += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return result;
}

// Of those that are printed as blanks; a tab is one.
bool hasControlCharacter(std::string_view text) {
  bool found = false;
  forEachCharacter(text, [&found](std::string_view character) {
    found |= isPrintedAsBlank(character) && character != " " && character != "\t";
  });
  return found;
}

// Runs the work. What fails in it is refused with this status, but for a lack of memory.
template <typename Work>
auto orRefuse(int status, const std::string& beginning, Work&& work) {
  try {
    return work();
  } catch (const RuntimeError& error) {
    if (error.number() == RuntimeError::outOfMemory().number()) throw;
    throw Refusal{beginning + error.description(), status};
  }
}

class WindowlessPage {
 public:
  WindowlessPage(Component& component, const PathPageRequest& request)
      : component_(component),
        request_(request),
        paper_(paperOf(request)),
        view_(component, request, {"they are drawn in red, at sea level", "the page cannot be drawn"},
              result_.notes, result_.warnings) {}

  PathPage run() {
    try {
      checkRequest();
      view_.load();
      view_.checkPath();
      view_.checkSettingsOfTheDrawing();
      print();
      describe();
    } catch (const Refusal& refusal) {
      fail(refusal.status, refusal.reason);
    } catch (const RuntimeError& error) {
      if (error.number() != RuntimeError::outOfMemory().number()) throw;
      fail(kRequestRefused, "there is no memory for the page; ask for fewer copies");
    }
    return std::move(result_);
  }

 private:
  const ProfileViewState& state() const { return view_.state(); }

  void fail(int status, const std::string& reason) {
    result_ = {};
    result_.status = status;
    result_.error = reason;
  }

  void checkRequest() const {
    if (request_.file.empty()) throw Refusal{"no file is named for the page"};
    if (request_.copies < 1 || request_.copies > kMostPageCopies)
      throw Refusal{"there would be " + std::to_string(request_.copies) + " copies; give 1 to " +
                    std::to_string(kMostPageCopies)};
  }

  void print() {
    requirePictureApplication();
    std::optional<OutputFile> file;
    orRefuse(kPathExportFailed, "", [&] { file.emplace(request_.file); });
    const std::string page = document();
    orRefuse(kPathExportFailed, "", [&] { file->write(page); });
  }

  std::string document() {
    RecordingCanvas window;
    view_.draw(window);
    view_.requirePlotHeight();
    takeModel();
    const PageContent content = pageContent(
        state(), [this](std::string_view control) { return view_.shownText(control); },
        pageOrigin(component_.host(), component_.clock(), view_.module().datumText), description());
    return orRefuse(kRequestRefused, "the page cannot be drawn: ", [&] { return documentOf(content); });
  }

  std::string documentOf(const PageContent& content) {
    PrintedPage page(paper_.width, paper_.height);
    const DrawnPage drawn = drawPage(page, paper_, content, [this](Canvas& box) {
      view_.drawForPage(box);
      return true;
    });
    if (drawn.descriptionCut) {
      result_.descriptionCut = true;
      result_.notes.push_back("the description has no room on the page and ends in an ellipsis there");
    }
    return pdfDocument(page, request_.copies, pageDocument(content));
  }

  std::string description() {
    Printable given = printable(request_.description);
    if (given.replaced)
      result_.notes.push_back(
          "the description has bytes that are not UTF-8, which are printed as \xEF\xBF\xBD");
    if (hasControlCharacter(given.text))
      result_.notes.push_back("the description has control characters, which are printed as blanks");
    return std::move(given.text);
  }

  void takeModel() {
    for (const std::string& text : view_.trap().messages.texts)
      result_.notes.push_back("the modeled loss is left out: " + text);
    if (!state().model) return;
    if (!isModelFrequency(state().inputs.frequency)) {
      result_.warnings.push_back("the frequency of " + generalNumber(decimalValue(state().inputs.frequency)) +
                                 " MHz is outside 20 to 20000 MHz, for which the model is meant: "
                                 "there is no modeled loss");
      return;
    }
    result_.model = takeModelInputs(view_.inputs(), SettingsUser::kWindow, result_.notes, result_.warnings);
    noteDeviates(*state().model, *result_.model, result_.notes);
  }

  void describe() {
    const ProfileInputs& inputs = state().inputs;
    const PlotIndex index = state().plotIndex();
    result_.widthMm = paper_.width * kTwipsToMm;
    result_.heightMm = paper_.height * kTwipsToMm;
    result_.from = {inputs.start.latitude, inputs.start.longitude};
    result_.to = {inputs.end.latitude, inputs.end.longitude};
    result_.startHeightM = inputs.antennaHeights[0];
    result_.endHeightM = inputs.antennaHeights[1];
    result_.distanceKm = state().path.distance;
    result_.bearingDeg = state().path.azimuth;
    result_.expanded = state().expanded;
    for (const bool right : {false, true}) {
      const ProfileMarker& marker = right ? state().rightMarker : state().leftMarker;
      if (marker.shown)
        result_.markers.push_back({right, index.distanceFromStart(static_cast<double>(marker.x))});
    }
    result_.k = decimalValue(inputs.k);
    result_.frequencyMhz = decimalValue(inputs.frequency);
    result_.fresnelPercent = view_.fresnelPercent();
    result_.units = inputs.dispUnits == 1 ? PlotUnits::kImperial : PlotUnits::kMetric;
    result_.freeSpaceLoss = view_.readouts().text(readout::kFreeSpaceLoss);
    result_.modeledLoss = view_.readouts().text(readout::kModeledLoss);
    result_.terrain = view_.terrain();
  }

  Component& component_;
  const PathPageRequest& request_;
  PaperFormat paper_;
  PathPage result_;
  WindowlessView view_;
};

}  // namespace

PathPage printPath(const PathPageRequest& request) {
  return accessing([&](Component& component) { return WindowlessPage(component, request).run(); });
}

}  // namespace zel
