#include "component/api/terrain_provenance.h"

#include "foundation/number_text.h"

namespace zel {
namespace {

std::string operationText(const DatumOperation& operation) {
  if (operation.accuracy < 0) return operation.name + " (accuracy unknown)";
  return operation.name + " (accuracy " + generalNumber(operation.accuracy) + " m)";
}

}  // namespace

TerrainProvenance terrainProvenance(const SamplingReport& report, const std::string& datum) {
  TerrainProvenance provenance;
  provenance.sourceCode = report.sourceCode;
  provenance.sourceName = report.sourceName;
  provenance.bundledSample = report.bundledSample;
  provenance.files = report.files;
  provenance.warnings = report.warnings;
  provenance.method = report.method;
  provenance.voids = report.voids;
  provenance.datum = datum;
  if (report.datumShifted) provenance.datumOperation = operationText(report.datumOperation);
  return provenance;
}

}  // namespace zel
