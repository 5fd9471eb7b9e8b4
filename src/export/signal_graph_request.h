// What a signal graph asks for.
#pragma once

#include <optional>
#include <string>

#include "export/signal_levels.h"

namespace zel {

struct SignalGraphRequest {
  SignalRequest signal;
  double start = 0;           // metres from the transmitter, where the plotted stretch begins
  std::optional<double> end;  // where it ends; the end of the path when not given
  std::string title;
  // The export then ends when the picture is there, or fails when gnuplot makes none within a minute.
  bool waitForPicture = false;
};

}  // namespace zel
