#include "profile/view_state/profile_procedures.h"

#include "profile/calculation/earth_curvature.h"
#include "profile/calculation/fresnel_line.h"
#include "profile/sampling/ground_heights.h"
#include "profile/sampling/sampler_messages.h"
#include "profile/sampling/terrain_sampling.h"

namespace zel {
namespace {

constexpr std::string_view kGroundPattern = "##,##0.0";

// Marks a drawing as being in progress, on every way out of it.
class DrawingMark {
 public:
  explicit DrawingMark(ProfileFlags& flags) : flags_(flags) { flags_.drawing = true; }
  ~DrawingMark() { flags_.drawing = false; }
  DrawingMark(const DrawingMark&) = delete;
  DrawingMark& operator=(const DrawingMark&) = delete;

 private:
  ProfileFlags& flags_;
};

}  // namespace

ProfileProcedures::ProfileProcedures(Services services, SettingsReader settings)
    : services_(std::move(services)), settings_(std::move(settings)) {}

void ProfileProcedures::InitITM(ProfileViewState& state) {
  state.model.reset();
  services_.trapped->run(":InitITM:", [&] {
    const ItmSettings stored = readItmSettings(settings_, SettingsUser::kWindow);
    services_.trapped->step(1);
    state.model = modelParameters(stored, *services_.normalTable);
  });
}

void ProfileProcedures::DoPreCalc(ProfileViewState& state) {
  runOrFail(":DoPreCalc:", [&] { preCalculate(state); });
}

void ProfileProcedures::preCalculate(ProfileViewState& state) {
  state.path = measurePath(*services_.geodesy, state.inputs.start, state.inputs.end);
  if (state.path.underRange) {
    state.flags.underRange = true;
    refuseProfile(state, kUnderRangeText, MessageIcon::kCritical);
    return;
  }
  services_.trapped->step(1);
  showPath(state);
  services_.trapped->step(2);
  const CalculationSettings density = readCalculationSettings(settings_);
  services_.trapped->step(3);
  state.path = layOutPath(*services_.geodesy, state.path, density.pointsPerKm, density.maxPoints);
  const auto samples = static_cast<std::size_t>(state.path.samples);
  state.rawElevation.resize(samples);
  state.elevation.resize(samples);
}

void ProfileProcedures::showPath(const ProfileViewState& state) {
  services_.readouts->show(
      readout::kDistance,
      formatNumber(state.path.distance * state.inputs.units.distance.factor, "##0.0", services_.numbers));
  services_.readouts->show(readout::kAzimuth, formatNumber(state.path.azimuth, "###", services_.numbers));
}

void ProfileProcedures::MinMaxAv(ProfileViewState& state) {
  runOrFail(":MinMaxAv:", [&] {
    state.statistics = heightStatistics(state.path, state.elevation, state.curve);
    services_.trapped->step(1);
    showHeight(state, readout::kStartGround, state.statistics.startGround);
    showHeight(state, readout::kEndGround, state.statistics.endGround);
    showHeight(state, readout::kAverage, state.statistics.average);
    showHeight(state, readout::kMaximum, state.statistics.maximum);
    showHeight(state, readout::kMinimum, state.statistics.minimum);
  });
}

void ProfileProcedures::recomputeCurvature(ProfileViewState& state) {
  if (!state.flags.recomputeCurvature) return;
  state.curve = curvatureRise(state.inputs.k, state.path.samples, state.path.extendedLength);
  state.riseK = state.inputs.k;
  state.flags.recomputeCurvature = false;
}

bool ProfileProcedures::resampleTerrain(ProfileViewState& state) {
  if (!state.flags.resample) return true;
  const SamplingRequest request =
      extendedPathRequest(state.path, state.inputs.calcMethod, state.inputs.source);
  RawSamples sampled = sampleTerrain(*services_.sampler, services_.terrain, request);
  state.samplingReport = services_.sampler->report();
  if (const SamplerMessage* message = samplerMessage(sampled.status)) {
    if (message->terrainError) state.flags.terrainError = true;
    refuseProfile(state, message->text, message->icon);
    return false;
  }
  // A status that no message stands for goes on, but says nothing about the flags.
  if (sampled.status == kSamplerOk) state.flags.profileError = state.flags.terrainError = false;

  state.rawElevation = sampled.heights;
  state.elevation =
      groundHeights(std::move(sampled.heights), *services_.sampler, *services_.errorLog, *services_.hardStop);
  return true;
}

void ProfileProcedures::computeLines(ProfileViewState& state) {
  state.lineOfSight = lineOfSight(state.path, state.elevation, state.curve, state.inputs.antennaHeights);
  state.wavelength = wavelengthOf(state.inputs.frequency);
  state.fresnel = fresnelLine(state.path, state.lineOfSight, state.wavelength, state.inputs.fresnelFraction,
                              std::move(state.fresnel));
}

bool ProfileProcedures::prepareDrawing(ProfileViewState& state) {
  if (state.flags.profileError || state.flags.loading) return false;
  services_.trapped->step(1);
  recomputeCurvature(state);
  services_.trapped->step(2);
  if (!resampleTerrain(state)) return false;
  MinMaxAv(state);
  services_.trapped->step(4);
  computeLines(state);
  return true;
}

bool ProfileProcedures::refreshProfile(ProfileViewState& state) {
  const DrawingMark mark(state.flags);
  bool prepared = false;
  const bool done = runOrFail(":drawLine:", [&] {
    prepared = prepareDrawing(state);
    if (prepared) state.flags.resample = false;
  });
  return done && prepared;
}

void ProfileProcedures::refuseProfile(ProfileViewState& state, std::string_view text, MessageIcon icon) {
  state.flags.profileError = true;
  services_.module->bProfileFailed = true;
  services_.dialogs->message(profileErrorBox(text, icon));
}

void ProfileProcedures::showHeight(const ProfileViewState& state, std::string_view control, float height) {
  services_.readouts->show(
      control, formatNumber(height * state.inputs.units.height.factor, kGroundPattern, services_.numbers));
}

}  // namespace zel
