// What the user is told about a sampling that failed.
#pragma once

#include <string_view>

#include "foundation/runtime_error.h"
#include "platform/dialogs.h"

namespace zel {

inline constexpr std::string_view kProfileErrorTitle = "Profile Error";
inline constexpr std::string_view kUnderRangeText = "Under Range Error.";

struct SamplerMessage {
  int status = 0;
  std::string_view text;
  MessageIcon icon = MessageIcon::kCritical;
  bool terrainError = false;  // sets the terrain-error flag beside the profile-error flag
};

// The message of a failed sampling; null for every status that lets the profile go on, so for all but 1 to 4.
const SamplerMessage* samplerMessage(int status);

// The same where there is no window to tell it in: a failure for the trap, with the text and a number of its
// own, 1000 + the status.
RuntimeError samplerFailure(const SamplerMessage& message);

// The box with a text under the title "Profile Error".
MessageBoxRequest profileErrorBox(std::string_view text, MessageIcon icon);

}  // namespace zel
