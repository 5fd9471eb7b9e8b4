#include "command_line/provenance.h"

#include <nlohmann/json.hpp>

namespace zel::host {

std::string terrainSentence(const TerrainProvenance& terrain) {
  std::string text = terrain.sourceName + " (code " + std::to_string(terrain.sourceCode) + "): ";
  if (terrain.bundledSample) text += "the bundled sample terrain stands in, because no source is set; ";
  if (terrain.files.empty()) text += "no raster had a height";
  for (std::size_t i = 0; i < terrain.files.size(); ++i) text += (i == 0 ? "" : ", ") + terrain.files[i];
  if (!terrain.datumOperation.empty())
    text += "; positions are NAD-27, converted by " + terrain.datumOperation;
  return text;
}

nlohmann::ordered_json terrainJson(const TerrainProvenance& terrain) {
  nlohmann::ordered_json json;
  json["source_code"] = terrain.sourceCode;
  json["source"] = terrain.sourceName;
  json["bundled_sample"] = terrain.bundledSample;
  json["files"] = terrain.files;
  json["interpolation"] = terrain.method;
  json["voids"] = terrain.voids;
  if (!terrain.datum.empty()) json["datum"] = terrain.datum;
  if (!terrain.datumOperation.empty()) json["datum_operation"] = terrain.datumOperation;
  return json;
}

}  // namespace zel::host
