#include "analysis/link_computation.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <utility>

#include "analysis/link_stretches.h"
#include "zel/geodesic.h"
#include "zel/path_loss.h"
#include "zel/plot_image.h"

namespace zel::host {
namespace {

void addNotes(std::vector<std::string>& notes, const std::vector<std::string>& more) {
  for (const std::string& note : more)
    if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
}

template <typename Request>
Request requestOf(const Station& from, const Station& to) {
  Request request;
  request.from = from.position;
  request.to = to.position;
  request.fromHeight = from.antennaM;
  request.toHeight = to.antennaM;
  return request;
}

std::string shortest(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

std::string modelInputsText(const PathLossModelInputs& model) {
  constexpr double kPercent = 100;
  const auto percent = [](double fraction) { return shortest(std::round(fraction * kPercent)) + " %"; };
  const char* climate = radioClimateName(model.climate);
  return std::string("modeled loss: ") +
         (model.polarization == Polarization::kVertical ? "vertical" : "horizontal") + " polarization, " +
         (climate != nullptr ? climate : "climate " + std::to_string(model.climate)) + ", permittivity " +
         shortest(model.permittivity) + ", conductivity " + shortest(model.conductivity) +
         " S/m, refractivity " + shortest(model.surfaceRefractivity) + " N-units, confidence " +
         percent(model.confidence) + ", reliability " + percent(model.reliability);
}

}  // namespace

LinkComputation::LinkComputation(const Plan& plan, const Link& link) : frequencyMhz_(link.frequencyMhz) {
  const auto from = plan.stations.find(link.from);
  const auto to = plan.stations.find(link.to);
  if (from == plan.stations.end() || to == plan.stations.end()) {
    fail("a station of the link is not in the plan");
    return;
  }
  from_ = from->second;
  to_ = to->second;
}

bool LinkComputation::step() {
  try {
    switch (next_) {
      case Step::kProfile:
        next_ = Step::kLoss;
        profile();
        return true;
      case Step::kLoss:
        next_ = Step::kPlot;
        loss();
        return true;
      case Step::kPlot:
        next_ = Step::kDone;
        plot();
        return true;
      case Step::kDone:
        break;
    }
  } catch (const std::exception& error) {  // settings that cannot be read, memory
    fail(error.what());
    return true;
  }
  return false;
}

void LinkComputation::fail(const std::string& why) {
  result_ = {};
  result_.done = true;
  result_.error = why;
  next_ = Step::kDone;
}

void LinkComputation::profile() {
  auto request = requestOf<PathProfileRequest>(from_, to_);
  request.frequencyMhz = frequencyMhz_;
  profile_ = computePathProfile(request);
  const PathProfile& profile = profile_;
  if (profile.status != 0) {
    constexpr int kNoSource = 1, kOutside = 2;
    fail(profile.error);
    result_.noTerrain = profile.status == kNoSource || profile.status == kOutside;
    layOut();
    return;
  }
  result_.distanceKm = profile.distanceKm;
  result_.bearingDeg = profile.bearingDeg;
  result_.freeSpaceDb = profile.freeSpaceDb;
  result_.frequencyMhz = profile.frequencyMhz;
  result_.k = profile.k;
  result_.verdict = profile.verdict;
  result_.worst = profile.worst;
  result_.stretches = linkStretches(profile);
  result_.notes = profile.notes;
  addNotes(result_.notes, profile.terrain.warnings);
  result_.terrain =
      profile.terrain.sourceName + (profile.terrain.bundledSample ? " (bundled sample terrain)" : "");
}

// What needs no ground.
void LinkComputation::layOut() {
  const GeodesicLine line =
      geodesicLine(mapPosition(from_.position).position, mapPosition(to_.position).position, 2);
  result_.distanceKm = line.distanceKm;
  result_.bearingDeg = line.bearingDeg;
}

void LinkComputation::loss() {
  auto request = requestOf<PathLossRequest>(from_, to_);
  request.frequencyMhz = frequencyMhz_;
  loss_ = computePathLoss(request);
  const PathLoss& loss = loss_;
  if (loss.status != 0) {
    addNotes(result_.notes, {"no modeled loss: " + loss.error});
    return;
  }
  result_.modeledDb = loss.modeledDb;
  if (loss.modeledDb) addNotes(result_.notes, {modelInputsText(loss.model)});
  addNotes(result_.notes, loss.notes);
  addNotes(result_.notes, loss.warnings);
}

// The plot reaches a little past both ends, where the ground may be such that the window refuses it.
void LinkComputation::plot() {
  result_.profileProblem = antennaProblem(from_, to_);
  if (result_.profileProblem.empty())
    result_.profileProblem = checkPlotPath(requestOf<PlotImageRequest>(from_, to_)).error;
  if (!result_.profileProblem.empty())
    addNotes(result_.notes, {"the profile cannot be shown: " + result_.profileProblem});
  result_.done = true;
}

std::string antennaProblem(const Station& from, const Station& to) {
  constexpr double kHalf = 0.5;  // metres; rounded to even, which is 0
  for (const Station* each : {&from, &to})
    if (each->antennaM <= kHalf)
      return "the antenna of " + each->name +
             " stands on the ground (whole metres are used); give it a height of 1 m at least";
  return {};
}

LinkResult analyseLink(const Plan& plan, const Link& link) {
  LinkComputation computation(plan, link);
  while (computation.step()) {
  }
  return computation.take();
}

}  // namespace zel::host
