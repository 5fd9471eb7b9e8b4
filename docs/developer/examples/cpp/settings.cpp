// The settings that stand under the host's Title.
#include <zel/path_loss.h>
#include <zel/profile_control.h>
#include <zel/settings.h>

#include <cstdio>

int main() {
  if (const auto problem = zel::settingsProblem("Host Planner"))  // may be asked before anything is bound
    return std::printf("%s\n", problem->c_str()), 1;
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  try {
    const auto known = zel::knownSetting("Profile", "Prf_Freq");
    std::printf("%s/%s: %s, %s %s, range %s\n", known->section.c_str(), known->key.c_str(),
                known->meaning.c_str(), known->defaultText.c_str(), known->unit.c_str(),
                known->range.c_str());
    std::printf("Stored: %s\n", zel::storedSetting("Profile", "Prf_Freq").value_or("nothing").c_str());

    if (const auto problem = zel::settingProblem("Profile", "Prf_Freq", "fast"))
      std::printf("Refused: %s\n", problem->c_str());
    zel::storeSetting("Profile", "Prf_Freq", "450");    // for good: on the disk when the call returns
    zel::overrideSetting("ITM", "dReliability", "90");  // for this process alone
    std::printf("Stored: %s MHz\n", zel::storedSetting("Profile", "Prf_Freq").value_or("").c_str());
  } catch (const zel::SettingsError& error) {
    return std::printf("%s\n", error.what()), 1;
  }

  const zel::PathLoss loss = zel::computePathLoss({{36.40, -84.35}, {36.22, -84.12}, 30, 30, {}});
  std::printf("%g MHz, reliability %.2f: %.2f dB\n", loss.frequencyMhz, loss.model.reliability,
              loss.modeledDb.value_or(0));
}
