// A profile to export, in numbers that are easy to follow: the path of support/plot_state.h (10 km in 10
// intervals of 1 km, 1 sample beyond each end, samples 1 to 11 from station to station) due north from 36.5 N
// on a plane of 100 km a degree, with
//   ground        100 + i m            Fresnel line  120 + i m
//   rise          i / 2 m              line of sight 128 + 2 i m: 130 m at the start, 150 m at the end
#pragma once

#include <string>
#include <vector>

#include "export/export_profile.h"
#include "support/plot_state.h"
#include "support/scripted_terrain.h"

namespace zel::test {

inline ProfileViewState exportableState() {
  ProfileViewState state = flatProfile();
  state.path.start = state.inputs.start = {36.5, -84.25};
  state.path.end = state.inputs.end = {36.6, -84.25};
  state.path.back = {36.49, -84.25};
  state.path.forward = {36.61, -84.25};
  for (std::int32_t i = 1; i <= 12; ++i) {
    state.elevation[i] = state.rawElevation[i] = 100.0F + static_cast<float>(i);
    state.curve[i] = 0.5F * static_cast<float>(i);
  }
  for (std::int32_t i = 1; i <= 11; ++i) state.fresnel[i] = 120.0F + static_cast<float>(i);
  state.lineOfSight = {130, 150, 2};
  state.statistics = {101, 111, 101, 111, 116, 101.5F, 116.5F};
  state.model = ModelParameters{0, 5, 15, 0.005, 301, 0, 0};
  return state;
}

// Also on the ground: where the marker was put has a position and a height of its own.
inline void placeMarker(ProfileMarker& marker, float x, GeoPoint position, float groundHeight) {
  marker.x = marker.keptX = x;
  marker.shown = true;
  marker.position = position;
  marker.converted = {position.latitude + 1, position.longitude + 1};
  marker.groundHeight = groundHeight;
}

inline ExportProfile exportOf(const ProfileViewState& state, const NumberStyle& numbers = {}) {
  return exportProfile(state, PlaneGeodesy(), "NAD-83", numbers);
}

inline NumberStyle commaStyle() { return {",", "."}; }

// Takes lines and keeps them.
class KeptLines {
 public:
  auto sink() {
    return [this](std::string_view line) { lines.emplace_back(line); };
  }
  std::vector<std::string> lines;
};

// The fields of a line between ", ".
inline std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t begin = 0;
  for (std::size_t end; (end = line.find(", ", begin)) != std::string::npos; begin = end + 2)
    fields.push_back(line.substr(begin, end - begin));
  fields.push_back(line.substr(begin));
  return fields;
}

}  // namespace zel::test
