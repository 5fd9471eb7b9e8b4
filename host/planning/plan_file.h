// A plan as a JSON file (format in docs/file-formats.md).
//
//   {"format": "terrain-profiler plan", "version": 1, "datum": "NAD-83",
//    "stations": [{"id": 1, "name": "North ridge", "latitude": 36.4, "longitude": -84.35, "antenna_m": 30},
//    ...], "links": [{"from": 1, "to": 2, "frequency_mhz": 450}, ...], "view": {"latitude": 36.31,
//    "longitude": -84.23, "metres_per_pixel": 40}}
//
// Names are UTF-8. Numbers are written so that reading gives the same value.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "planning/plan.h"

namespace zel::host {

struct PlanFile {
  Plan plan;
  std::optional<PlanView> view;
};

// What is wrong with a file and where: "line 12, column 5: station 3: latitude 95 is not from -90 to 90".
// Stations and links are counted as they stand in the file.
class PlanFileError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline constexpr std::size_t kLargestPlanFile = 128U << 20;  // bytes

std::string planText(const PlanFile& file);
// Throws PlanFileError. Refused are: what is no JSON, no UTF-8, nested deeper than 16, no plan of this
// program, a later version, stations and links that a plan cannot have. Members that this version does not
// know are passed over.
PlanFile readPlanText(const std::string& text);

// Throw PlanFileError with the path and the system's reason.
PlanFile readPlanFile(const std::string& path);
// Written beside the file and renamed: on the disk as a whole, or what was there before stays.
void writePlanFile(const std::string& path, const PlanFile& file);

}  // namespace zel::host
