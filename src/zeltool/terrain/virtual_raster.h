// Virtual rasters name other files. Before one is opened, what it names is looked through.
#pragma once

#include <string>

namespace zel {

// Why a virtual raster must not be opened: it refers to itself, to the network, to a database or to anything
// else that is not a raster file on this machine; or its text cannot be read. Empty when it may. A file that
// it names and that is missing is no reason: that part of it is void. Within a GdalSession.
std::string virtualRasterRefusal(const std::string& path);

}  // namespace zel
