// The figures of one link, in steps of some milliseconds each, so that events can be handled in between.
// On the component's thread.
#pragma once

#include <string>

#include "analysis/link_analysis.h"
#include "zel/path_loss.h"

namespace zel::host {

// Why the component, which uses whole metres, cannot show the profile between these antennas: from one on the
// ground the model may find no horizon, and the profile window would stop at that. Empty when it can.
std::string antennaProblem(const Station& from, const Station& to);

class LinkComputation {
 public:
  // Takes what it needs of the plan; a link whose stations are not in it gives an error.
  LinkComputation(const Plan& plan, const Link& link);

  // The next step; false when there was none left. Never throws for bad terrain.
  bool step();
  LinkResult take() { return std::move(result_); }
  // What the result was made from, as far as it came; for who shows more than the result has.
  const PathProfile& profiled() const { return profile_; }
  const PathLoss& lost() const { return loss_; }

 private:
  enum class Step { kProfile, kLoss, kPlot, kDone };
  void profile();
  void layOut();
  void loss();
  void plot();
  void fail(const std::string& why);

  Step next_ = Step::kProfile;
  Station from_, to_;
  std::optional<double> frequencyMhz_;
  LinkResult result_;
  PathProfile profile_;
  PathLoss loss_;
};

}  // namespace zel::host
