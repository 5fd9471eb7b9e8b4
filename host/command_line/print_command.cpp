// print: the printed page of a path as a PDF, without a window.
#include <memory>
#include <optional>
#include <string>

#include "command_line/application.h"
#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "command_line/passing_file.h"
#include "command_line/path_options.h"
#include "command_line/path_output.h"
#include "command_line/provenance.h"
#include "command_line/stations.h"
#include "zel/path_page.h"

namespace zel::host {
namespace {

struct PrintOptions {
  PathOptions path;
  std::string output, description;
  std::string paper = "a4";
  bool landscape = false;
  int copies = 1;
};

std::string copiesProblem(const std::string& text) {
  int copies = 0;
  if (readWhole(text, copies) && copies >= 1 && copies <= kMostPageCopies) return {};
  return "\"" + text + "\" is not a whole number from 1 to " + std::to_string(kMostPageCopies);
}

void checkOutput(const std::string& output) {
  if (output == "-" || extensionOf(output) == ".pdf") return;
  throw UsageError(quotedOption("-o", output) +
                   "the page is a PDF; give a file that ends in .pdf, or - for standard output");
}

PathPageRequest requestOf(const PrintOptions& options) {
  PathPageRequest request;
  static_cast<PathViewRequest&>(request) = viewRequestOf(options.path);
  request.file = options.output;
  request.description = options.description;
  request.paper = options.paper == "letter" ? PagePaper::kLetter : PagePaper::kA4;
  request.landscape = options.landscape;
  request.copies = options.copies;
  return request;
}

std::string pageSentence(const PathPage& page, const PrintOptions& options) {
  return std::string(options.paper == "letter" ? "Letter" : "A4") +
         (options.landscape ? " landscape, " : " portrait, ") + fixed(page.widthMm, 0) + " x " +
         fixed(page.heightMm, 0) + " mm" +
         (options.copies > 1 ? ", " + std::to_string(options.copies) + " copies" : std::string());
}

void printSummary(const PathPage& page, const PrintOptions& options) {
  const auto& line = summaryLine;
  line("Page", options.output + " (" + pageSentence(page, options) + ")");
  line("From", stationSentence(page.from, page.startHeightM));
  line("To", stationSentence(page.to, page.endHeightM));
  line("Distance", fixed(page.distanceKm, 3) + " km");
  if (!page.markers.empty())
    line(page.expanded ? "Expanded between" : "Markers", markersSentence(page.markers));
  line("Free-space loss", lossSentence(page.freeSpaceLoss));
  line("Modeled loss", lossSentence(page.modeledLoss));
  line("Computed with", viewSentence(page));
  if (page.model)
    line("Longley-Rice", modelInputsSentence(*page.model) + ", reliability " +
                             std::to_string(percent(page.model->reliability)) + " %, confidence " +
                             std::to_string(percent(page.model->confidence)) + " %");
  line("Terrain", terrainSentence(page.terrain));
  for (const std::string& text : page.notes) line("Note", text);
  for (const std::string& text : page.warnings) line("Warning", text);
  for (const std::string& text : page.terrain.warnings) line("Warning", text);
}

void runPrint(const PrintOptions& options) {
  checkOutput(options.output);
  PathPageRequest request = requestOf(options);
  withoutDisplay();
  std::optional<PassingFile> passing;
  if (options.output == "-") request.file = passing.emplace().path();
  const PathPage page = printPath(request);
  if (page.status != 0) throw CommandFailure(page.error);
  if (passing)
    passing->send();  // standard output is the page's
  else
    printSummary(page, options);
}

}  // namespace

void addPrintCommand(CLI::App& program) {
  auto options = std::make_shared<PrintOptions>();
  CLI::App* command =
      program.add_subcommand("print", "The profile window's printed page of a path as a PDF, without it");
  addStationOptions(*command, options->path.from, options->path.to);
  command->add_option("-o,--output", options->output, "Write the page to this file; - is standard output")
      ->type_name("FILE.pdf")
      ->check(valueProblem)
      ->required();
  command
      ->add_option("--description", options->description,
                   "What the page says of the path; nothing unless given")
      ->type_name("TEXT");
  command->add_option("--paper", options->paper, "a4 unless given")
      ->type_name("a4|letter")
      ->check(CLI::IsMember({"a4", "letter"}));
  command->add_flag("--landscape", options->landscape, "The paper lies on its longer side");
  command->add_option("--copies", options->copies, "Pages of the document, 1 unless given")
      ->type_name("N")
      ->check(copiesProblem);
  addViewOptions(*command, options->path);
  command->footer(
      "The page is the one that the profile window prints for the same path and settings: date, host, path\n"
      "and description above the plot, the values below it. A file that is there is replaced. A description\n"
      "that the page has no room for ends in an ellipsis.\n"
      "Examples:\n"
      "  terrain-profiler print --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o path.pdf\n"
      "  terrain-profiler print --from 36.40,-84.35,30 --to 36.22,-84.12,30 --expand 4.5,12 --landscape "
      "--paper letter --description \"Jacksboro, second reflector\" -o part.pdf");
  command->callback([options] { runPrint(*options); });
}

}  // namespace zel::host
