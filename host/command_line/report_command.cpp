// report: for each link of a plan a page with map, profile and values, as a PDF.
#include <QDateTime>
#include <QEventLoop>
#include <QFile>
#include <QSaveFile>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "command_line/application.h"
#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/long_work.h"
#include "command_line/output.h"
#include "command_line/path_output.h"
#include "command_line/stations.h"
#include "desktop/host_settings.h"
#include "planning/plan_file.h"
#include "report/report_job.h"
#include "zel/profile_control.h"
#include "zel/terrain_map.h"
#include "zel/windows.h"

namespace zel::host {
namespace {

constexpr int kLookMs = 50;  // between two looks at whether the work is to stop

struct ReportOptions {
  std::string plan, output;
  std::string paper = "a4";
  bool landscape = false, json = false;
  std::string units;
  std::vector<std::string> links;
};

void checkReportOptions(const ReportOptions& options) {
  if (options.output != "-" && extensionOf(options.output) != ".pdf")
    throw UsageError(quotedOption("-o", options.output) +
                     "the report is a PDF; give a file that ends in .pdf, or - for standard output");
  if (options.output == "-" && options.json)
    throw UsageError("--json: standard output is the report's already; give -o a file");
  if (options.output != "-" && isSameFile(options.plan, options.output))
    throw UsageError(quotedOption("-o", options.output) + "that is the plan itself; name another file");
}

Plan planOf(const ReportOptions& options, ProfileControl& component) {
  Plan plan;
  try {
    plan = readPlanFile(options.plan).plan;
  } catch (const PlanFileError& error) {
    throw CommandFailure(error.what());
  }
  constexpr std::int16_t kNad27 = 0;
  if (component.get_StaDatum() == kNad27 && plan.datum != PlanDatum::kNad27)
    throw UsageError("--datum nad27: " + options.plan +
                     " says itself that its positions are NAD-83; leave --datum out");
  component.let_StaDatum(plan.datum == PlanDatum::kNad27 ? kNad27 : 1);
  if (plan.links.empty())
    throw CommandFailure(options.plan +
                         " has no links; link stations in the desktop program, then ask again");
  return plan;
}

std::vector<LinkId> linksOf(const ReportOptions& options, const Plan& plan) {
  std::vector<LinkId> links;
  if (options.links.empty()) {
    for (const auto& entry : plan.links) links.push_back(entry.first);
    return links;
  }
  std::vector<bool> found(options.links.size(), false);
  for (const auto& [id, link] : plan.links) {
    const std::string name = reportName(plan, link);
    bool wanted = false;
    for (std::size_t i = 0; i < options.links.size(); ++i) {
      if (options.links[i] != name) continue;
      found[i] = true;
      wanted = true;
    }
    if (wanted) links.push_back(id);
  }
  for (std::size_t i = 0; i < found.size(); ++i)
    if (!found[i])
      throw UsageError(quotedOption("--link", options.links[i]) +
                       "the plan has no link of this name; its first is \"" +
                       reportName(plan, plan.links.begin()->second) + "\"");
  return links;
}

ReportRequest requestOf(const ReportOptions& options, ProfileControl& component) {
  ReportRequest request;
  request.plan = planOf(options, component);
  request.links = linksOf(options, request.plan);
  request.planName = std::filesystem::path(options.plan).stem().string();
  request.sheet = options.paper == "letter" ? kSheetLetter : kSheetA4;
  if (options.landscape) request.sheet = lying(request.sheet);
  request.units.imperial = options.units.empty() ? imperialUnits() : options.units == "imperial";
  request.angles = angleFormat();
  request.terrain = TerrainMap::open(chosenSource());
  request.date = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")).toStdString();
  request.program = std::string(kApplicationTitle) + " " + ZEL_VERSION;
  return request;
}

// Where the document grows: a file beside the one that it will be, or one without a name, on its way to
// standard output.
class GrowingFile {
 public:
  explicit GrowingFile(const std::string& path) : path_(path) {
    if (path == "-") {
      scratch_ = std::tmpfile();
      if (scratch_ == nullptr || !passing_.open(scratch_, QIODevice::ReadWrite))
        throw CommandFailure("cannot make a file in the system's folder for temporary files");
      return;
    }
    saved_.setFileName(QFile::decodeName(path.c_str()));
    if (!saved_.open(QIODevice::WriteOnly)) throw failure(saved_);
  }
  ~GrowingFile() {
    passing_.close();
    if (scratch_ != nullptr) std::fclose(scratch_);
  }
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;

  QIODevice& device() { return scratch_ != nullptr ? static_cast<QIODevice&>(passing_) : saved_; }

  void finish() {
    if (scratch_ == nullptr) {
      if (!saved_.commit()) throw failure(saved_);
      return;
    }
    if (!passing_.flush() || !passing_.seek(0)) throw failure(passing_);
    std::array<char, 65536> piece{};
    for (qint64 size = 0; (size = passing_.read(piece.data(), piece.size())) > 0;)
      std::cout.write(piece.data(), size);
    finishStandardOutput();
  }

 private:
  CommandFailure failure(const QFileDevice& file) const {
    return CommandFailure(
        "cannot write " + path_ + ": " + file.errorString().toStdString() +
        "; nothing was changed, name a file in a folder that you may write to and that has room");
  }

  std::string path_;
  QSaveFile saved_;
  std::FILE* scratch_ = nullptr;
  QFile passing_;
};

// Each link is computed for the table, and then for its page.
std::string reportProgress(int done, int all) {
  const int links = all / 2;
  const bool pages = done >= links;
  return std::string("report: ") + (pages ? "page of link " : "figures of link ") +
         std::to_string(std::min((pages ? done - links : done) + 1, links)) + " of " + std::to_string(links) +
         ", " + std::to_string(all > 0 ? 100 * done / all : 100) + " %";
}

Report makeReport(ReportRequest request, QIODevice& device) {
  LongWork work("report");
  ReportJob job(std::move(request), device);
  QEventLoop loop;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &look, [&job] {
    if (LongWork::interrupted()) job.cancel();
  });
  look.start(kLookMs);
  bool ended = false;
  job.onProgress = [&](int done, int all) {
    if (!work.advance([&](double) { return reportProgress(done, all); })) job.cancel();
  };
  job.onEnd = [&] {
    ended = true;
    loop.quit();
  };
  job.start();
  if (!ended) loop.exec();
  if (job.report().cancelled)
    throw CommandInterrupted("interrupted; nothing was written", LongWork::askedBy());
  if (!job.report().finished)
    throw CommandFailure("no report: " + job.report().error + "; nothing was written");
  return job.report();
}

nlohmann::ordered_json rowJson(const LinkRow& row) {
  const auto number = [](const std::optional<double>& value, int decimals) {
    return value ? rounded(*value, decimals) : nlohmann::ordered_json();
  };
  nlohmann::ordered_json json;
  json["name"] = row.from + " - " + row.to;
  json["from"] = row.from;
  json["to"] = row.to;
  json["page"] = row.page;
  json["frequency_mhz"] =
      row.frequencyMhz ? nlohmann::ordered_json(*row.frequencyMhz) : nlohmann::ordered_json();
  json["distance_km"] = rounded(row.distanceKm, 6);
  json["bearing_deg"] = rounded(row.bearingDeg, 6);
  json["free_space_db"] = number(row.freeSpaceDb, 4);
  json["modeled_db"] = number(row.modeledDb, 4);
  json["clearance_percent"] = number(row.clearancePercent, 3);
  json["verdict"] = row.error.empty() ? nlohmann::ordered_json(verdictText(row.verdict)) : nullptr;
  const auto words = [](const std::string& text) {
    return text.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(text);
  };
  json["error"] = words(row.error);
  json["profile_problem"] = words(row.plotProblem);
  return json;
}

std::string paperSentence(const ReportOptions& options) {
  return std::string(options.paper == "letter" ? "Letter" : "A4") +
         (options.landscape ? " landscape" : " portrait");
}

void printReport(const Report& report, const ReportOptions& options, const std::string& planName) {
  if (options.output == "-") return;
  if (!options.json) {
    summaryLine("Report", options.output + " (" + paperSentence(options) + ", " +
                              std::to_string(report.pages) + " pages)");
    summaryLine("Plan", planName);
    summaryLine("Links", rowsSentence(report.rows));
    return;
  }
  nlohmann::ordered_json json;
  json["file"] = options.output;
  json["plan"] = options.plan;
  json["paper"] = options.paper;
  json["landscape"] = options.landscape;
  json["pages"] = report.pages;
  json["links"] = nlohmann::ordered_json::array();
  for (const LinkRow& row : report.rows) json["links"].push_back(rowJson(row));
  std::cout << json.dump(2) << '\n';
}

// One line on standard error for each; the last link without figures is the failure itself.
void tellProblems(const Report& report) {
  std::string failure;
  for (const LinkRow& row : report.rows) {
    const std::string name = row.from + " - " + row.to + " (page " + std::to_string(row.page) + ")";
    if (!row.error.empty()) {
      if (!failure.empty()) note(failure);
      failure = name + ": " + row.error;
    } else if (!row.plotProblem.empty()) {
      note(name + " has figures, but no profile: " + row.plotProblem);
    }
  }
  if (!failure.empty()) throw CommandFailure(failure);
}

void runReport(const ReportOptions& options, ProfileControl& component) {
  checkReportOptions(options);
  ReportRequest request = requestOf(options, component);
  const std::string planName = request.planName;
  withoutDisplay();
  if (const std::string problem = windowsProblem(); !problem.empty()) throw CommandFailure(problem);
  GrowingFile file(options.output);
  const Report report = makeReport(std::move(request), file.device());
  file.finish();
  printReport(report, options, planName);
  tellProblems(report);
}

}  // namespace

void addReportCommand(CLI::App& program, ProfileControl& control) {
  auto options = std::make_shared<ReportOptions>();
  CLI::App* command =
      program.add_subcommand("report", "A PDF with a page for each link of a plan: map, profile and values");
  command->add_option("PLAN", options->plan, "The plan, as the desktop program saves it")
      ->type_name("FILE.json")
      ->check(valueProblem)
      ->required();
  command->add_option("-o,--output", options->output, "Write the report to this file; - is standard output")
      ->type_name("FILE.pdf")
      ->check(valueProblem)
      ->required();
  command->add_option("--link", options->links, "Only this link, FROM - TO (repeatable)")
      ->type_name("NAME")
      ->check(valueProblem)
      ->allow_extra_args(false);
  command->add_option("--paper", options->paper, "a4 unless given")
      ->type_name("a4|letter")
      ->check(CLI::IsMember({"a4", "letter"}));
  command->add_flag("--landscape", options->landscape, "The paper lies on its longer side");
  command
      ->add_option("--units", options->units,
                   "Units that are shown; by default the setting Settings/DispUnits")
      ->type_name("metric|imperial")
      ->check(CLI::IsMember({"metric", "imperial"}));
  command->add_flag("--json", options->json, "Print the summary as JSON");
  command->footer(
      "The first page has a table of all links, then each link has a page of its own. Figures are those of "
      "the\n"
      "map's table; the datum is the plan's. A link without figures has a page that says why, the others\n"
      "follow, and the exit status is 1. A file that is there is replaced when the report is complete.\n"
      "Examples:\n"
      "  terrain-profiler report plan.json -o plan.pdf\n"
      "  terrain-profiler report plan.json -o two.pdf --link \"North ridge - Depot\" --link \"Depot - "
      "Summit\" "
      "--paper letter --landscape");
  command->callback([options, &control] { runReport(*options, control); });
}

}  // namespace zel::host
