// What comes with a raster file when it is opened: virtual rasters name other files, and most formats look
// for companions beside the file (projection, mask, statistics ...). Before a file is opened, all of that is
// looked through.
#pragma once

#include <string>

namespace zel {

// Why a raster must not be opened: a companion is a pipe or a device, at which reading would wait for ever;
// its mask or, for a virtual raster, anything that it names is no raster file on this machine (the network,
// a database, a pipe ...); it refers to itself; its text cannot be read. Empty when it may. A file that it
// names and that is missing is no reason: that part of it is void. Within a GdalSession.
std::string attachmentRefusal(const std::string& path);

}  // namespace zel
