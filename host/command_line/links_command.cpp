// links: losses, clearances and verdicts of a list of links, row by row.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/long_work.h"
#include "command_line/output.h"
#include "command_line/path_output.h"
#include "command_line/plain_number.h"
#include "links/input_bytes.h"
#include "links/link_batch.h"
#include "links/run_facts.h"
#include "zel/geodesic.h"
#include "zel/path_calculator.h"
#include "zel/profile_control.h"
#include "zel/settings.h"
#include "zel/terrain.h"

namespace zel::host {
namespace {

using LinksJson = nlohmann::ordered_json;

constexpr std::size_t kMostJobs = 256;
constexpr std::size_t kMostFactors = 8;
constexpr std::size_t kMostErrorLines = 24;
constexpr std::size_t kMostTextKinds = 8;  // notes and warnings in a summary for a person
constexpr double kMostPercent = 1000;
constexpr double kMetresPerFootOption = 0.3048;

struct LinksOptions {
  std::string input, output, format, delimiter, decimal, heightUnit, frequencyUnit, clearance;
  std::vector<std::string> factors, columns;
  std::optional<double> frequency;
  std::size_t jobs = 0;  // as many as there are cores
  bool notes = false, resume = false, restart = false, json = false;
};

UsageError wrongOption(const char* option, const std::string& text, const std::string& why) {
  return UsageError(std::string(option) + " " + quotedText(text) + ": " + why);
}

char delimiterOption(const std::string& text) {
  for (const auto& [name, delimiter] :
       {std::pair("comma", ','), std::pair("semicolon", ';'), std::pair("tab", '\t'), std::pair("bar", '|')})
    if (text == name) return delimiter;
  constexpr std::string_view kTaken = "\"\r\n#.-+";
  const char c = text.size() == 1 ? text[0] : '\0';
  const bool plain = c > ' ' && c <= '~' && !std::isalnum(static_cast<unsigned char>(c));
  if (c == '\t' || (plain && kTaken.find(c) == std::string_view::npos)) return c;
  throw wrongOption("--delimiter", text,
                    "give comma, semicolon, tab, bar or one other character that is in no number");
}

// "1.333" or "4/3", above 0. What stands behind names of columns for it: "_k0.667".
EarthFactor factorOption(const std::string& text) {
  const std::size_t slash = text.find('/');
  const auto number = plainNumber(text.substr(0, slash));
  const auto divisor =
      slash == std::string::npos ? std::optional<double>(1) : plainNumber(text.substr(slash + 1));
  const double k = number && divisor && *divisor > 0 ? *number / *divisor : 0;
  if (!(k > 0 && k <= 1e6))
    throw wrongOption("--k", text, "give a number above 0 and at most 1000000, as 1.333 or 4/3");
  std::string shown = slash == std::string::npos ? shortest(k) : fixed(k, 3);
  if (slash != std::string::npos) {
    shown.erase(shown.find_last_not_of('0') + 1);
    if (shown.back() == '.') shown.pop_back();
  }
  return {k, k, "_k" + shown};
}

// The setting that stands in for a missing --k, as the profile takes it.
double storedFactor() {
  const auto known = knownSetting("Profile", "Prf_Crv");
  const std::string text =
      storedSetting("Profile", "Prf_Crv").value_or(known ? known->otherDefault : "1.333");
  return plainNumber(text).value_or(0);
}

std::vector<EarthFactor> factorsOf(const LinksOptions& options) {
  std::vector<EarthFactor> factors;
  for (const std::string& text : options.factors) {
    EarthFactor factor = factorOption(text);
    for (const EarthFactor& other : factors)
      if (other.suffix == factor.suffix) throw wrongOption("--k", text, "this k is given twice");
    factors.push_back(std::move(factor));
  }
  if (factors.size() > kMostFactors)
    throw UsageError("--k is given " + std::to_string(factors.size()) + " times; " +
                     std::to_string(kMostFactors) + " times at most");
  if (factors.empty()) factors.push_back({std::nullopt, storedFactor(), {}});
  factors.front().suffix.clear();
  return factors;
}

double clearanceOption(const std::string& text) {
  if (text.empty()) return FigureOptions().clearPercent;
  const auto percent = plainNumber(text);
  if (percent && *percent >= 0 && *percent <= kMostPercent) return *percent;
  throw wrongOption("--clearance", text, "give a percentage of the first Fresnel zone, from 0 to 1000");
}

void addColumns(LayoutOptions& layout, const std::string& text) {
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    const std::string each = text.substr(begin, end - begin);
    begin = end + 1;
    const std::size_t equals = each.find('=');
    const std::string field = each.substr(0, equals);
    const auto known = std::find(kLinkFieldNames.begin(), kLinkFieldNames.end(), field);
    if (equals == std::string::npos || equals + 1 == each.size() || known == kLinkFieldNames.end())
      throw wrongOption("--columns", each,
                        "give FIELD=NAME, with the field one of name, lat1, lon1, position1, h1, lat2, "
                        "lon2, position2, h2, frequency");
    if (!layout.columns
             .emplace(static_cast<LinkField>(known - kLinkFieldNames.begin()), each.substr(equals + 1))
             .second)
      throw wrongOption("--columns", each, "this field is given twice");
  }
}

LayoutOptions layoutOptions(const LinksOptions& options) {
  LayoutOptions layout;
  if (!options.delimiter.empty()) layout.delimiter = delimiterOption(options.delimiter);
  if (!options.decimal.empty())
    layout.decimal = options.decimal == "comma" ? DecimalMark::kComma : DecimalMark::kPoint;
  if (!options.heightUnit.empty()) layout.heightUnit = options.heightUnit == "ft" ? kMetresPerFootOption : 1;
  if (!options.frequencyUnit.empty())
    layout.frequencyUnit = options.frequencyUnit == "GHz" ? 1e3 : options.frequencyUnit == "kHz" ? 1e-3 : 1;
  for (const std::string& text : options.columns) addColumns(layout, text);
  return layout;
}

LinkFormat formatOf(const LinksOptions& options) {
  if (!options.format.empty()) return *linkFormat(options.format);
  if (options.output == "-") return LinkFormat::kCsv;
  if (const auto format = linkFormat(extensionOf(options.output))) return *format;
  throw UsageError(
      "-o \"" + options.output +
      "\" ends in none of .csv, .json, .geojson and .kml; name a file that does, or say --format");
}

bool isDevice(const std::string& path) {
  std::error_code none;
  return std::filesystem::exists(path, none) && !std::filesystem::is_regular_file(path, none) &&
         !std::filesystem::is_directory(path, none);
}

std::unique_ptr<LinkSink> makeDeviceSink(const std::string& path) {
  const int device = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (device < 0)
    throw CommandFailure("cannot write " + path + ": " + std::generic_category().message(errno));
  return makeStreamSink(device, path, true);
}

// A run from its options to its summary.
class LinksRun {
 public:
  LinksRun(const LinksOptions& options, bool nad27)
      : options_(options),
        nad27_(nad27),
        layout_(layoutOptions(options)),
        format_(formatOf(options)),
        input_(options.input) {
    figures_.factors = factorsOf(options);
    figures_.clearPercent = clearanceOption(options.clearance);
    figures_.frequencyMhz = options.frequency;
  }

  void run() {
    calculator_ = PathCalculator::open();
    readLayout();
    writer_ = makeLinkWriter(format_, writerOptions());
    makeSink();
    const bool whole = compute();
    work_.clearLine();
    tellRestOfErrors();
    if (!whole) throw interruption(totals_.links);
    if (totals_.links == 0) note(input_.title() + " has no links");
    sink_->finish();
    seconds_ = std::chrono::duration<double>(Clock::now() - begin_).count();
    tell();
    if (totals_.errors > 0)
      throw CommandFailure(std::to_string(totals_.errors) + " of " + std::to_string(totals_.links) +
                           " links of " + input_.title() +
                           " could not be computed, or not all of them; their column \"error\" says why");
  }

 private:
  using Clock = std::chrono::steady_clock;

  bool compute() {
    try {
      return runLinkBatch(*list_, *writer_, job(), *sink_, totals_, hooks());
    } catch (const LinkFileError& error) {
      if (sink_->left().empty() || !input_.size()) throw;
      throw CommandFailure(std::string(error.what()) +
                           "; what is done is kept, and the same command with --resume goes on");
    }
  }

  // A list that ends because it was asked to is none that has a fault.
  void readLayout() {
    try {
      list_ = std::make_unique<LinkList>(input_, layout_, [] { return LongWork::interrupted(); });
    } catch (const LinkFileError&) {
      if (!LongWork::interrupted()) throw;
    }
    if (LongWork::interrupted()) throw interruption(0);
  }

  CommandInterrupted interruption(std::size_t links) const {
    const std::string left = sink_ ? sink_->left() : std::string();
    std::string text = "interrupted after " + std::to_string(links) + (links == 1 ? " link" : " links");
    if (left.empty())
      text += sink_ ? "" : "; nothing was written";
    else if (input_.size())
      text += "; they are kept in " + left + ", and the same command with --resume goes on";
    else
      text += "; they are kept in " + left;
    return {text, LongWork::askedBy()};
  }

  WriterOptions writerOptions() const {
    WriterOptions options;
    options.layout = list_->layout();
    options.figures = figures_;
    options.notes = options_.notes;
    options.mark = list_->marked();
    options.from = computedFrom();
    return options;
  }

  ComputedFrom computedFrom() const {
    ComputedFrom from;
    from.version = ZEL_VERSION;
    from.input =
        options_.input == "-" ? input_.title() : std::filesystem::path(options_.input).filename().string();
    for (const TerrainSource& source : terrainSources())
      if (source.code == calculator_->source()) {
        from.sourceCode = source.code;
        from.sourceName = source.name;
        from.bundledSample = source.bundledSample;
        from.terrainPaths = source.paths;
      }
    from.datum = nad27_ ? "NAD-27" : "NAD-83 (as WGS 84)";
    from.settings = settingsOfPaths();
    from.model = kRadioModel;
    return from;
  }

  void makeSink() {
    if (options_.output == "-" || isDevice(options_.output)) {
      if (options_.resume)
        throw UsageError("--resume: what was sent to " +
                         (options_.output == "-" ? "standard output" : options_.output) +
                         " cannot be gone on with; give -o a file");
      if (options_.output == "-") {
        std::cout.flush();
        sink_ = makeStreamSink(STDOUT_FILENO, "standard output", false);
      } else {
        sink_ = makeDeviceSink(options_.output);
      }
      return;
    }
    if (options_.resume && !input_.size())
      throw UsageError(
          "--resume: a list from " + input_.title() +
          " cannot be gone on with, because what was read of it is gone; give the list as a file");
    if (options_.input != "-" && isSameFile(options_.input, options_.output))
      throw UsageError("-o \"" + options_.output + "\" is the list itself; name another file");
    const StartMode mode = options_.restart  ? StartMode::kRestart
                           : options_.resume ? StartMode::kResume
                                             : StartMode::kFresh;
    auto sink = std::make_unique<UnfinishedOutput>(options_.output, facts(), mode, input_.size().has_value());
    if (sink->keptTotals()) {
      begun_ = true;
      if (!totals_.read(*sink->keptTotals()))
        throw CommandFailure("what is left in " + sink->left() + " is damaged; --restart begins anew");
      resumedAt_ = totals_.links;
    }
    sink_ = std::move(sink);
  }

  RunFacts facts() {
    RunFacts facts{{"the program's version", ZEL_VERSION}};
    const auto add = [&facts](std::string name, std::string value) {
      facts.emplace_back(std::move(name), std::move(value));
    };
    add("the list's size", input_.size() ? std::to_string(*input_.size()) : "");
    add("the list's content", std::to_string(input_.fingerprint()));
    add("the format", formatName(format_));
    add("the delimiter", delimiterName(list_->layout().delimiter));
    add("the decimal mark", list_->layout().decimal == DecimalMark::kComma ? "comma" : "point");
    add("--height-unit", options_.heightUnit);
    add("--frequency-unit", options_.frequencyUnit);
    for (const auto& [field, name] : layout_.columns)
      add(std::string("--columns ") + kLinkFieldNames[static_cast<std::size_t>(field)], name);
    for (std::size_t i = 0; i < figures_.factors.size(); ++i)
      add("k " + std::to_string(i + 1), shortest(figures_.factors[i].used));
    add("--clearance", shortest(figures_.clearPercent));
    add("--frequency", figures_.frequencyMhz ? shortest(*figures_.frequencyMhz) : "");
    add("--notes", options_.notes ? "given" : "");
    const ComputedFrom from = computedFrom();
    add("the datum", from.datum);
    for (const auto& [name, value] : from.settings) add("the setting " + name, value);
    for (const std::string& path : from.terrainPaths) add("the terrain " + path, terrainState(path));
    return facts;
  }

  BatchJob job() const {
    BatchJob job;
    const auto calculator = calculator_;
    job.source.profiles = [calculator](const PathProfileRequest& request,
                                       const std::vector<std::optional<double>>& factors) {
      return calculator->profiles(request, factors);
    };
    job.source.loss = [calculator](const PathLossRequest& request) { return calculator->loss(request); };
    job.figures = figures_;
    job.jobs = jobs();
    job.begun = begun_;
    job.done = totals_.links;
    const bool map = format_ == LinkFormat::kGeoJson || format_ == LinkFormat::kKml;
    if (map && nad27_) job.toMap = [](Position position) { return mapPosition(position).position; };
    return job;
  }

  std::size_t jobs() const {
    return options_.jobs > 0 ? options_.jobs : std::max<std::size_t>(std::thread::hardware_concurrency(), 1);
  }

  BatchHooks hooks() {
    BatchHooks hooks;
    hooks.rowError = [this](std::size_t line, const std::string& error) {
      if (++toldErrors_ > kMostErrorLines) return;
      work_.clearLine();
      note("line " + std::to_string(line) + ": " + error);
    };
    hooks.advance = [this](std::size_t links) {
      return work_.advance([&](double seconds) { return progress(links, seconds); });
    };
    return hooks;
  }

  std::string progress(std::size_t links, double seconds) const {
    LinksProgress progress;
    progress.links = links;
    progress.before = resumedAt_;
    progress.seconds = seconds;
    progress.bytes = list_->position();
    progress.allBytes = input_.size().value_or(0);
    return linksProgressText(progress);
  }

  void tellRestOfErrors() const {
    if (toldErrors_ > kMostErrorLines)
      note("and " + std::to_string(toldErrors_ - kMostErrorLines) + " more links with errors");
  }

  double rate() const {
    return seconds_ > 0 ? static_cast<double>(totals_.links - resumedAt_) / seconds_ : 0;
  }

  void tell() const {
    if (options_.json)
      std::cout << summaryJson().dump(2, ' ', false, LinksJson::error_handler_t::replace) << '\n';
    else
      (options_.output == "-" ? std::cerr : std::cout) << summary() << std::flush;
  }

  static std::string sentenceOf(const std::array<std::size_t, 4>& counts) {
    std::string text;
    for (std::size_t i = 0; i < counts.size(); ++i)
      text += (i == 0 ? "" : ", ") + std::to_string(counts[i]) + " " + kVerdictNames[i];
    return text;
  }

  std::string readSentence() const {
    const LinkLayout& layout = list_->layout();
    std::string text = delimiterName(layout.delimiter) + " between the fields, decimal " +
                       (layout.decimal == DecimalMark::kComma ? "comma" : "point");
    for (const LinkField field :
         {LinkField::kName, LinkField::kLatitude1, LinkField::kLongitude1, LinkField::kPosition1,
          LinkField::kHeight1, LinkField::kLatitude2, LinkField::kLongitude2, LinkField::kPosition2,
          LinkField::kHeight2, LinkField::kFrequency})
      if (layout.columnOf(field) && layout.nameOf(field) != kLinkFieldNames[static_cast<std::size_t>(field)])
        text += std::string(", ") + kLinkFieldNames[static_cast<std::size_t>(field)] + " from \"" +
                printableText(layout.nameOf(field)) + "\"";
    const bool feet1 = layout.columnOf(LinkField::kHeight1) && layout.heightUnits[0] != 1,
               feet2 = layout.columnOf(LinkField::kHeight2) && layout.heightUnits[1] != 1;
    if (feet1 || feet2)
      text += feet1 && feet2 ? ", heights in feet" : feet1 ? ", h1 in feet" : ", h2 in feet";
    if (layout.columnOf(LinkField::kFrequency) && layout.frequencyUnit != 1)
      text += ", frequencies in " + std::string(layout.frequencyUnit > 1 ? "GHz" : "kHz");
    return text;
  }

  std::string terrainSummary() const {
    const ComputedFrom from = computedFrom();
    std::string text = from.sourceName + " (code " + std::to_string(from.sourceCode) + ")";
    if (from.bundledSample) text += ": the bundled sample terrain stands in, because no source is set";
    constexpr std::size_t kMostNamed = 4;
    std::size_t named = 0;
    for (const std::string& file : totals_.files)
      if (named++ < kMostNamed) text += (named == 1 ? "; " : ", ") + file;
    if (totals_.files.size() > kMostNamed)
      text += " and " + std::to_string(totals_.files.size() - kMostNamed) + " more files";
    if (totals_.files.empty()) text += "; no raster had a height";
    if (!totals_.datumOperation.empty())
      text += "; positions are NAD-27, converted by " + totals_.datumOperation;
    return text;
  }

  static void appendKinds(std::string& text, const char* title,
                          const std::map<std::string, TextKind>& kinds) {
    std::vector<const TextKind*> byCount;
    for (const auto& [kind, each] : kinds) byCount.push_back(&each);
    std::stable_sort(byCount.begin(), byCount.end(), [](auto* a, auto* b) { return a->links > b->links; });
    for (std::size_t i = 0; i < std::min(byCount.size(), kMostTextKinds); ++i)
      text += summaryText(title, std::to_string(byCount[i]->links) +
                                     (byCount[i]->links == 1 ? " link" : " links") + ", first in line " +
                                     std::to_string(byCount[i]->line) + ": " + byCount[i]->example);
    if (byCount.size() > kMostTextKinds)
      text += summaryText(
          title, "and " + std::to_string(byCount.size() - kMostTextKinds) + " more kinds; --json has all");
  }

  std::string summary() const {
    std::string text = summaryText(
        "Links", std::to_string(totals_.links) +
                     (totals_.errors > 0 ? ", " + std::to_string(totals_.errors) + " of them with errors"
                                         : ", none with errors"));
    for (std::size_t i = 0; i < figures_.factors.size(); ++i)
      text += summaryText(
          "Verdicts",
          "k " + significant(figures_.factors[i].used, 7) + ": " +
              sentenceOf(i < totals_.verdicts.size() ? totals_.verdicts[i] : std::array<std::size_t, 4>{}));
    text += summaryText(
        "Computed with",
        "clear from " + shortest(figures_.clearPercent) + " % of the first Fresnel zone, " +
            (figures_.frequencyMhz ? shortest(*figures_.frequencyMhz) + " MHz where a link has none, "
                                   : std::string()) +
            (totals_.interpolation.empty() ? "" : totals_.interpolation + ", ") +
            "exact geometry station to station; " + kRadioModel);
    text += summaryText("Terrain", terrainSummary());
    text += summaryText("Read", readSentence());
    for (const std::string& each : list_->notes()) text += summaryText("Note", each);
    appendKinds(text, "Note", totals_.notes);
    appendKinds(text, "Warning", totals_.warnings);
    text += summaryText(
        "Time", fixed(seconds_, 1) + " s, " + fixed(rate(), 0) + " links/s, " + std::to_string(jobs()) +
                    (jobs() == 1 ? " thread" : " threads") +
                    (begun_ ? "; " + std::to_string(resumedAt_) + " links were there already" : ""));
    if (options_.output != "-") text += summaryText("Written", options_.output);
    return text;
  }

  static LinksJson kindsJson(const std::map<std::string, TextKind>& kinds) {
    LinksJson list = LinksJson::array();
    for (const auto& [kind, each] : kinds)
      list.push_back({{"links", each.links}, {"first_line", each.line}, {"text", each.example}});
    return list;
  }

  LinksJson summaryJson() const {
    const ComputedFrom from = computedFrom();
    LinksJson json;
    json["links"] = totals_.links;
    json["errors"] = totals_.errors;
    for (std::size_t i = 0; i < figures_.factors.size(); ++i) {
      LinksJson counts{{"k", figures_.factors[i].used}};
      for (std::size_t name = 0; name < kVerdictNames.size(); ++name)
        counts[kVerdictNames[name]] = i < totals_.verdicts.size() ? totals_.verdicts[i][name] : 0;
      json["verdicts"].push_back(counts);
    }
    json["clear_percent"] = figures_.clearPercent;
    json["frequency_mhz"] = figures_.frequencyMhz ? LinksJson(*figures_.frequencyMhz) : LinksJson(nullptr);
    json["terrain"] = {{"source_code", from.sourceCode},
                       {"source", from.sourceName},
                       {"bundled_sample", from.bundledSample},
                       {"paths", from.terrainPaths},
                       {"files", totals_.files},
                       {"interpolation", totals_.interpolation}};
    json["datum"] = from.datum;
    if (!totals_.datumOperation.empty()) json["datum_operation"] = totals_.datumOperation;
    for (const auto& [name, value] : from.settings) json["settings"][name] = value;
    json["model"] = from.model;
    for (const auto& [name, value] : totals_.model) json["model_parameters"][name] = LinksJson::parse(value);
    json["read"] = {{"delimiter", delimiterName(list_->layout().delimiter)},
                    {"decimal", list_->layout().decimal == DecimalMark::kComma ? "comma" : "point"},
                    {"notes", list_->notes()}};
    json["notes"] = kindsJson(totals_.notes);
    json["warnings"] = kindsJson(totals_.warnings);
    json["texts_of_other_kinds"] = totals_.otherTexts;
    json["seconds"] = rounded(seconds_, 3);
    json["links_per_second"] = rounded(rate(), 1);
    json["threads"] = jobs();
    json["resumed_behind"] = resumedAt_;
    json["output"] = options_.output;
    return json;
  }

  const LinksOptions& options_;
  bool nad27_;
  LayoutOptions layout_;
  LinkFormat format_;
  FigureOptions figures_;
  InputBytes input_;
  std::shared_ptr<const PathCalculator> calculator_;
  std::unique_ptr<LinkList> list_;
  std::unique_ptr<LinkWriter> writer_;
  std::unique_ptr<LinkSink> sink_;
  LinkTotals totals_;
  bool begun_ = false;
  std::size_t resumedAt_ = 0, toldErrors_ = 0;
  Clock::time_point begin_ = Clock::now();
  double seconds_ = 0;
  LongWork work_{"links"};
};

void runLinks(const LinksOptions& options, ProfileControl& component) {
  if (options.resume && options.restart) throw UsageError("--resume and --restart exclude each other");
  if (options.json && options.output == "-")
    throw UsageError("--json and -o - both want standard output; give the links a file");
  try {
    LinksRun(options, component.get_StaDatum() == 0).run();
  } catch (const LinkFileError& error) {
    throw CommandFailure(error.what());
  }
}

}  // namespace

void addLinksCommand(CLI::App& program, ProfileControl& component) {
  auto options = std::make_shared<LinksOptions>();
  CLI::App* command = program.add_subcommand(
      "links", "Losses, clearances and verdicts of a list of links, as CSV, JSON, GeoJSON or KML");
  command->add_option("LIST", options->input, "CSV of the links; - is standard input")
      ->required()
      ->type_name("FILE")
      ->check(valueProblem);
  const auto add = [command](const std::string& name, std::string& value, const std::string& help,
                             const std::string& type) {
    return command->add_option(name, value, help)->check(valueProblem)->type_name(type);
  };
  add("-o,--output", options->output,
      "File to write, .csv, .json, .geojson or .kml; - is CSV on standard output", "FILE")
      ->required();
  add("--format", options->format, "csv, json, geojson or kml, whatever the file is called", "FORMAT")
      ->check(CLI::IsMember({"csv", "json", "geojson", "kml"}, CLI::ignore_case));
  command
      ->add_option(
          "--k", options->factors,
          "Effective-earth factor, as 1.333 or 4/3 (repeatable); by default the setting Profile/Prf_Crv")
      ->check(valueProblem)
      ->allow_extra_args(false)
      ->type_name("K");
  add("--clearance", options->clearance, "What is called clear: this much of the first Fresnel zone [60]",
      "PERCENT");
  command
      ->add_option("--frequency", options->frequency,
                   "Frequency of links without one; by default the setting Profile/Prf_Freq")
      ->check(positiveNumberProblem)
      ->type_name("MHZ");
  command->add_option("--jobs", options->jobs, "Threads that compute; by default one for each core")
      ->check(CLI::Range(std::size_t{1}, kMostJobs))
      ->type_name("N");
  add("--delimiter", options->delimiter,
      "comma, semicolon, tab, bar or a character; by default found in the first line", "NAME");
  add("--decimal", options->decimal, "point or comma; by default as the first numbers have it", "NAME")
      ->check(CLI::IsMember({"point", "comma"}));
  add("--height-unit", options->heightUnit, "m or ft; by default as the columns are called, else m", "UNIT")
      ->check(CLI::IsMember({"m", "ft"}));
  add("--frequency-unit", options->frequencyUnit,
      "MHz, GHz or kHz; by default as the column is called, else MHz", "UNIT")
      ->check(CLI::IsMember({"MHz", "GHz", "kHz"}));
  command
      ->add_option("--columns", options->columns,
                   "Which column is which, as lat1=Breite,lon1=Laenge (repeatable)")
      ->check(valueProblem)
      ->allow_extra_args(false)
      ->type_name("FIELD=NAME,...");
  command->add_flag("--notes", options->notes, "One more column in CSV: what was assumed and warned of");
  command->add_flag("--resume", options->resume, "Go on with a run that was cut off");
  command->add_flag("--restart", options->restart, "Throw away what a run that was cut off has left");
  command->add_flag("--json", options->json, "Print the summary as JSON");
  command->footer(
      "The first line names the columns, in any order and case: name, lat1, lon1, h1, lat2, lon2, h2, "
      "frequency.\n"
      "Positions are decimal degrees or degrees-minutes-seconds, heights metres above ground, frequencies "
      "MHz;\n"
      "without a height the settings Profile/Prf_HtL and Profile/Prf_HtR hold. Other columns are carried "
      "over.\n"
      "Added are distance_km, bearing_deg, free_space_db, modeled_db, mode, obstacle_km from the start, "
      "obstacle_m\n"
      "above sea level, clearance_m, clearance_percent, verdict and error; the five before error once more "
      "for\n"
      "each further --k, as verdict_k0.667. The figures are those of profile and loss.\n"
      "A link that cannot be computed is told on standard error with its line, has its error, and does not "
      "stop\n"
      "the rest; the exit code is then 1. What a run that is cut off has done stays in FILE.unfinished.\n"
      "Examples:\n"
      "  terrain-profiler links links.csv -o result.csv\n"
      "  terrain-profiler --terrain ~/tiles links links.csv -o result.geojson --k 4/3 --k 2/3 --frequency "
      "7500\n"
      "  terrain-profiler links liste.csv -o ergebnis.csv --columns lat1=Breite_A,lon1=Laenge_A "
      "--height-unit ft\n"
      "  terrain-profiler links links.csv -o result.csv --resume\n"
      "  cut -d, -f1-7 links.csv | terrain-profiler links - -o - | head");
  command->callback([options, &component] { runLinks(*options, component); });
}

}  // namespace zel::host
