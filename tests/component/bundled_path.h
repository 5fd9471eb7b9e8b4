// The path over the bundled terrain that the tests of the component share: 28.734 km.
#pragma once

#include "zel/path_profile.h"
#include "zel/station_profile.h"

namespace zel::test {

inline constexpr Position kFrom{36.40, -84.35};
inline constexpr Position kTo{36.22, -84.12};
inline constexpr StationProfile_Type kStart{kFrom.latitude, kFrom.longitude, 30};  // metres above ground
inline constexpr StationProfile_Type kEnd{kTo.latitude, kTo.longitude, 12};

}  // namespace zel::test
