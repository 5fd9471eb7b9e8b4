#include "profile/sampling/sampler_messages.h"

#include <array>

#include "platform/terrain.h"

namespace zel {
namespace {

constexpr std::array kMessages{
    SamplerMessage{kSamplerConfiguration, "Configuration Error.", MessageIcon::kCritical, false},
    SamplerMessage{kSamplerInvalidData, "Some or all of the terrain data is invalid!",
                   MessageIcon::kInformation, true},
    SamplerMessage{kSamplerOverRange, "Over Range Error.", MessageIcon::kCritical, false},
    SamplerMessage{kSamplerUnderRange, kUnderRangeText, MessageIcon::kCritical, false},
};

}  // namespace

const SamplerMessage* samplerMessage(int status) {
  for (const SamplerMessage& message : kMessages)
    if (message.status == status) return &message;
  return nullptr;
}

RuntimeError samplerFailure(const SamplerMessage& message) {
  constexpr int kOwnNumbers = 1000;
  return {kOwnNumbers + message.status, std::string(message.text)};
}

MessageBoxRequest profileErrorBox(std::string_view text, MessageIcon icon) {
  return {std::string(text), std::string(kProfileErrorTitle), icon, MessageButtons::kOk};
}

}  // namespace zel
