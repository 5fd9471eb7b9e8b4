// Printing of frmProfile: the menu items, the page routine with its twins of the drawing, the description,
// and the preview.
#include <QLabel>
#include <QLineEdit>
#include <cmath>
#include <utility>

#include "canvas/qt/printed_page.h"
#include "component/services/hourglass.h"
#include "component/services/save_path.h"
#include "export/export_profile.h"
#include "foundation/runtime_error.h"
#include "profile/settings/settings_table.h"
#include "ui/page/page_content.h"
#include "ui/page/page_drawing.h"
#include "ui/page/page_origin.h"
#include "ui/plot/plot_scale.h"
#include "ui/profile_window/control_panel.h"
#include "ui/profile_window/frm_profile.h"
#include "ui/profile_window/frm_prt_desc.h"
#include "ui/profile_window/print_preview.h"
#include "ui/profile_window/window_placement.h"

namespace zel {
namespace {

constexpr int kNothingToPrint = 1103;
constexpr const char* kDescriptionCut = "The description had no room on the page; it ends in an ellipsis.";
constexpr double kSamePaper = 30;  // twips, half a millimetre: the same paper by another name

// A page has its read-outs from the window, and its plot is drawn under the hourglass of the whole page.
class NoReadouts final : public ProfileReadouts {
 public:
  void show(std::string_view, const std::string&) override {}
};

bool isSamePaper(const PaperFormat& a, const PaperFormat& b) {
  return std::abs(a.width - b.width) < kSamePaper && std::abs(a.height - b.height) < kSamePaper;
}

std::vector<PaperFormat> usualPapers(PageOrientation orientation) {
  return {lying(a4Paper(), orientation), lying(letterPaper(), orientation)};
}

// The usual ones and the printer's own, which stands for the one of its size and brings its margins.
struct Papers {
  std::vector<PaperFormat> all;
  std::size_t own = 0;
};
Papers papersBeside(const PaperFormat& own, PageOrientation orientation) {
  Papers papers{usualPapers(orientation), 0};
  for (; papers.own < papers.all.size(); ++papers.own) {
    PaperFormat& paper = papers.all[papers.own];
    if (!isSamePaper(paper, own)) continue;
    paper = {paper.name, own.width, own.height, own.margins};
    return papers;
  }
  papers.all.push_back(own);
  return papers;
}

}  // namespace

// A procedure whose failures say that they are of printing.
template <typename Body>
void FrmProfile::printingProcedure(std::string_view name, Body&& body) {
  procedure(name, [&body] {
    try {
      body();
    } catch (...) {
      const ErrorInformation error = currentError();
      throw RuntimeError(error.number, "Printing Error: " + error.description);
    }
  });
}

// ---- The plot on the page ----

class FrmProfile::PagePlot {
 public:
  PagePlot(FrmProfile& window, Canvas& box)
      : state_(window.state_),
        module_(*window.module_),
        profile_(profileServices(window), window.settings_),
        plot_(plotServices(window, box), window.settings_, state_) {
    module_.bProfileFailed = false;
  }

  PlotProcedures& plot() { return plot_; }
  // Of any part of the drawing.
  bool failed() const { return module_.bProfileFailed; }

 private:
  ProfileProcedures::Services profileServices(FrmProfile& window) {
    ProfileProcedures::Services services = window.profileServices();
    services.readouts = &readouts_;
    services.module = &module_;
    return services;
  }
  PlotProcedures::Services plotServices(FrmProfile& window, Canvas& box) {
    PlotProcedures::Services services = window.plotServices();
    services.canvas = &box;
    services.profile = &profile_;
    services.readouts = &readouts_;
    services.pointer = &pointer_;
    services.module = &module_;
    services.style = pageStyle();
    services.names = kPrintProcedures;
    return services;
  }

  ProfileViewState state_;
  ModuleState module_;
  NoReadouts readouts_;
  NoPointer pointer_;
  ProfileProcedures profile_;
  PlotProcedures plot_;
};

bool FrmProfile::PrintLine(Canvas& box) {
  bool drawn = false;
  act([&] {
    if (!plot_) return;
    PagePlot page(*this, box);
    page.plot().drawLine();
    // Under the box of a failure the window may have gone: the flag is another's by then.
    if (page.failed() && !unloaded_) module_->bProfileFailed = true;
    drawn = page.plot().hasDrawn() && !page.failed();
  });
  return drawn;
}

// ---- What is printed ----

// Runs the body; whether a failure of the profile was told meanwhile. The flag of an earlier one stays.
template <typename Body>
bool FrmProfile::toldAFailure(Body&& body) {
  const bool before = std::exchange(module_->bProfileFailed, false);
  try {
    body();
  } catch (...) {
    if (!unloaded_) module_->bProfileFailed = true;
    throw;
  }
  // Of an unloaded window it is another's by now.
  if (unloaded_) return false;
  const bool told = module_->bProfileFailed;
  module_->bProfileFailed = told || before;
  return told;
}

// The profile that the window shows, with what was typed. False when a box has told why there is none.
bool FrmProfile::readyToPrint() {
  if (!bringUpToDateForPrinting()) return false;
  const PlotPanel panel = plotPanel();
  if (panel.startAntenna.empty() || panel.endAntenna.empty() || panel.frequency.empty())
    throw RuntimeError(kNothingToPrint, "The box of an antenna height or of the frequency is empty");
  if (!plot_ || !isExportable(state_) || state_.flags.drawing)
    throw RuntimeError(kNothingToPrint, "There is no profile to print");
  return true;
}

// Texts and plot of the page agree when nothing is left to compute and the markers of an expanded view are
// far enough from each other.
bool FrmProfile::bringUpToDateForPrinting() {
  const bool told = toldAFailure([this] {
    bringUpToDate();
    const bool pending = state_.flags.recomputeCurvature || state_.flags.modeledLossPending;
    if (!unloaded_ && (pending || (state_.expanded && !canExpandBetweenMarkers(state_)))) drawLine();
  });
  return !told && !unloaded_;
}

std::string FrmProfile::shownText(std::string_view control) const {
  const QLatin1String name(control.data(), static_cast<qsizetype>(control.size()));
  if (const auto* label = panel_->findChild<QLabel*>(name)) return label->text().toStdString();
  if (const auto* box = panel_->findChild<QLineEdit*>(name)) return box->text().trimmed().toStdString();
  return {};
}

struct FrmProfile::MadePage {
  std::unique_ptr<PrintedPage> page;
  PrintedDocument document;
  bool descriptionCut = false;
};

std::optional<FrmProfile::MadePage> FrmProfile::makePage(const PaperFormat& paper,
                                                         const std::string& description) {
  trapped_.step(2);
  MadePage made;
  made.page = std::make_unique<PrintedPage>(paper.width, paper.height);
  const PageOrigin origin = pageOrigin(*services_.host, *services_.clock, module_->datumText);
  const PageContent content = pageContent(
      state_, [this](std::string_view control) { return shownText(control); }, origin, description);
  trapped_.step(3);
  DrawnPage drawn;
  const bool told = toldAFailure([&] {
    drawn = drawPage(*made.page, paper, content, [this](Canvas& box) { return PrintLine(box); });
    if (!drawn.drawn && !module_->bProfileFailed && !unloaded_)
      throw RuntimeError(kNothingToPrint, "The plot was not drawn");
  });
  if (told || unloaded_) return std::nullopt;
  made.descriptionCut = drawn.descriptionCut;
  made.document = pageDocument(content);
  return made;
}

// ---- Page routine ----

PrintService& FrmProfile::requirePrinting() const {
  if (services_.printing == nullptr)
    throw RuntimeError(PrintService::kNoSuchPrinter, "There is no way to print here");
  return *services_.printing;
}

bool FrmProfile::PrintProfile(const PrintRequest& request, const std::optional<std::string>& description) {
  bool printed = false;
  printingProcedure(":PrintProfile:", [&] { printed = printPage(request, description); });
  return printed;
}

bool FrmProfile::PrintProfileOn(const std::string& printer, std::int32_t copies, std::int32_t orientation,
                                const std::optional<std::string>& description) {
  bool printed = false;
  printingProcedure(":PrintProfile:", [&] {
    if (orientation != 1 && orientation != 2)
      throw RuntimeError(PrintService::kInvalidCall,
                         "The orientation is neither 1 (portrait) nor 2 (landscape)");
    const PrintRequest request =
        requirePrinting().request(printer, copies, static_cast<PageOrientation>(orientation));
    printed = printPage(request, description);
  });
  return printed;
}

bool FrmProfile::printPage(const PrintRequest& request, const std::optional<std::string>& description) {
  requirePrinting();
  if (!readyToPrint()) return false;
  trapped_.step(1);
  const std::optional<std::string> wanted = wantedDescription(description);
  // While it was asked for, the host may have done anything to the view.
  if (!wanted || unloaded_ || !readyToPrint()) return false;
  const std::optional<MadePage> sent = sendPage(request, *wanted);
  if (!sent) return false;
  if (sent->descriptionCut && !unloaded_)
    services_.dialogs->message({kDescriptionCut, {}, MessageIcon::kInformation, MessageButtons::kOk});
  return true;
}

// The page that was printed, if any.
std::optional<FrmProfile::MadePage> FrmProfile::sendPage(const PrintRequest& request,
                                                         const std::string& description) {
  const Hourglass hourglass(*services_.pointer);
  std::optional<MadePage> made = makePage(request.paper, description);
  if (!made) return std::nullopt;
  trapped_.step(7);
  requirePrinting().print(request, *made->page, made->document);
  return made;
}

// ---- Description ----

// Nothing when the print is not wanted.
std::optional<std::string> FrmProfile::wantedDescription(const std::optional<std::string>& given) {
  if (given) return given;
  // A window of a host's own has a module state of its own from before the host has set one.
  const ModuleState& component = *services_.module;
  if (component.printDescriptionSet) return component.printDescription;
  std::optional<std::string> answer = askForDescription();
  if (answer && !unloaded_) storeDescription(*answer);
  return answer;
}

std::optional<std::string> FrmProfile::askForDescription() {
  FrmPrtDesc::Services services;
  services.trap = services_.trap;
  services.storedDescription = [this] { return storedDescription(); };
  if (services_.host->windowPlacement() != nullptr) {
    services.restorePlace = [this](QWidget& window, std::string_view name) {
      restorePlacement(window, name, *services_.host->windowPlacement());
    };
    services.storePlace = [this](const QWidget& window, std::string_view name) {
      storePlacement(window, name, *services_.host->windowPlacement());
    };
  }
  const QPointer<FrmPrtDesc> dialog = new FrmPrtDesc(std::move(services), this);
  showModally(*dialog);
  if (dialog.isNull()) return std::nullopt;
  std::optional<std::string> outcome = dialog->outcome();
  delete dialog.data();
  return outcome;
}

std::string FrmProfile::storedDescription() const {
  return settings_.text(settings::kPrintDescription, SettingsUser::kWindow);
}

// A text that cannot be stored is told, and printed all the same.
void FrmProfile::storeDescription(const std::string& description) {
  printingProcedure(":PrintProfile:", [&] {
    trapped_.step(1);
    services_.host->WriteSetting(settings::kPrintDescription.section, settings::kPrintDescription.key,
                                 description);
  });
}

// Until it is closed, at the latest when the window is unloaded.
void FrmProfile::showModally(QDialog& dialog) {
  if (unloaded_) return;
  dialogs_.emplace_back(&dialog);
  dialog.exec();
  dialogs_.pop_back();
}

// ---- Menu ----

std::optional<PrintRequest> FrmProfile::chooseRequest(PageOrientation orientation,
                                                      const std::optional<PaperFormat>& paper) {
  std::optional<PrintRequest> request = requirePrinting().choose(orientation, paper);
  if (!request || unloaded_) return std::nullopt;
  trapped_.step(2);
  services_.eventLoop->processPending();
  if (unloaded_) return std::nullopt;
  trapped_.step(3);
  return request;
}

void FrmProfile::mnuPrint_Click() {
  printingProcedure(":mnuPrint_Click:", [this] {
    requirePrinting();
    if (!readyToPrint()) return;
    trapped_.step(1);
    const bool landscape = services_.module->printLandscape;
    const auto request =
        chooseRequest(landscape ? PageOrientation::kLandscape : PageOrientation::kPortrait, std::nullopt);
    if (request) PrintProfile(*request);
  });
}

// ---- Preview ----

void FrmProfile::mnuPrintPreview_Click() {
  printingProcedure(":mnuPrintPreview_Click:", [this] {
    requirePrinting();
    if (readyToPrint()) showPreview();
  });
}

void FrmProfile::showPreview() {
  PrintPreview::Services services;
  services.makePage = [this](const PaperFormat& paper, const std::string& description) {
    std::optional<PreviewedPage> previewed;
    printingProcedure(":mnuPrintPreview_Click:", [&] {
      if (!readyToPrint()) return;
      std::optional<MadePage> made = makePage(paper, description);
      if (made) previewed = PreviewedPage{std::move(made->page), made->descriptionCut};
    });
    return previewed;
  };
  services.papers = [this](PageOrientation orientation) {
    std::vector<PaperFormat> papers = usualPapers(orientation);
    printingProcedure(":mnuPrintPreview_Click:",
                      [&] { papers = papersBeside(requirePrinting().paper(orientation), orientation).all; });
    return papers;
  };
  services.print = [this](const PaperFormat& paper, PageOrientation orientation,
                          const std::string& description) {
    return printFromPreview(paper, orientation, description);
  };
  services.savePdf = [this](const PaperFormat& paper, const std::string& description) {
    return savePreviewed(paper, description);
  };
  const ModuleState& component = *services_.module;
  PrintPreview::Start start;
  if (component.printLandscape) start.orientation = PageOrientation::kLandscape;
  start.paper = papersBeside(requirePrinting().paper(start.orientation), start.orientation).own;
  start.description = component.printDescriptionSet ? component.printDescription : storedDescription();

  const QPointer<PrintPreview> preview = new PrintPreview(std::move(services), start, this);
  showModally(*preview);
  delete preview.data();
}

bool FrmProfile::printFromPreview(const PaperFormat& paper, PageOrientation orientation,
                                  const std::string& description) {
  bool printed = false;
  printingProcedure(":mnuPrint_Click:", [&] {
    trapped_.step(1);
    const std::optional<PrintRequest> request = chooseRequest(orientation, paper);
    printed = request && printPreviewed(*request, description);
  });
  return printed;
}

std::string FrmProfile::savePreviewed(const PaperFormat& paper, const std::string& description) {
  std::string saved;
  printingProcedure(":mnuPrintPreview_Click:", [&] {
    trapped_.step(1);
    const std::string path = chosenSavePath(
        *services_.dialogs, {"Save to PDF File", ".pdf", "PDF Document (*.pdf)|*.pdf", true, true});
    if (unloaded_ || path.empty()) return;
    if (printPreviewed({{}, path, 1, paper}, description)) saved = path;
  });
  return saved;
}

// A description that the host has set, and that was not changed in the preview, does not take the place of
// the one that the user has stored.
bool FrmProfile::printPreviewed(const PrintRequest& request, const std::string& description) {
  if (!PrintProfile(request, description) || unloaded_) return false;
  const ModuleState& component = *services_.module;
  if (!component.printDescriptionSet || description != component.printDescription)
    storeDescription(description);
  return !unloaded_;
}

}  // namespace zel
