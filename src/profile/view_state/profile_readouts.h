// Where the calculation shows its results: the labels of the profile window by their control names.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace zel {

namespace readout {
inline constexpr std::string_view kDistance = "lblDist";
inline constexpr std::string_view kAzimuth = "lblAzd";
inline constexpr std::string_view kStartGround = "lblSAMSL";
inline constexpr std::string_view kEndGround = "lblEAMSL";
inline constexpr std::string_view kAverage = "lblAvHt";
inline constexpr std::string_view kMaximum = "lblMaxHt";
inline constexpr std::string_view kMinimum = "lblMinHt";
}  // namespace readout

class ProfileReadouts {
 public:
  virtual ~ProfileReadouts() = default;
  virtual void show(std::string_view control, const std::string& text) = 0;
};

// Keeps the texts: the labels of a profile without a window.
class KeptReadouts : public ProfileReadouts {
 public:
  void show(std::string_view control, const std::string& text) override {
    texts_[std::string(control)] = text;
  }
  // Empty for a control that has not been shown yet.
  std::string text(std::string_view control) const {
    const auto found = texts_.find(std::string(control));
    return found == texts_.end() ? std::string() : found->second;
  }

 private:
  std::map<std::string, std::string> texts_;
};

}  // namespace zel
