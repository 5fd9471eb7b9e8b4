#include "zeltool/placement/stored_window_placement.h"

#include <charconv>
#include <optional>
#include <string>
#include <utility>

#include "foundation/text.h"
#include "zeltool/host_tools/client_title.h"

namespace zel {

namespace {

constexpr std::string_view kSection = "Windows";

std::string keyOf(std::string_view window, std::string_view side) {
  return std::string(window).append(" ").append(side);
}

std::optional<std::int32_t> pixels(std::string_view text) {
  text = trimmed(text);
  std::int32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

StoredWindowPlacement::StoredWindowPlacement(std::shared_ptr<SettingsStore> settings)
    : settings_(std::move(settings)) {}

void StoredWindowPlacement::Restore(std::string_view window, std::int32_t& left, std::int32_t& top) {
  const std::string title = clientTitle(client_);
  const auto storedLeft = pixels(settings_->ReadSetting(title, kSection, keyOf(window, "Left"), ""));
  const auto storedTop = pixels(settings_->ReadSetting(title, kSection, keyOf(window, "Top"), ""));
  if (!storedLeft || !storedTop) return;
  left = *storedLeft;
  top = *storedTop;
}

void StoredWindowPlacement::Store(std::string_view window, std::int32_t& left, std::int32_t& top) {
  const std::string title = clientTitle(client_);
  settings_->WriteSetting(title, kSection, keyOf(window, "Left"), std::to_string(left));
  settings_->WriteSetting(title, kSection, keyOf(window, "Top"), std::to_string(top));
}

}  // namespace zel
