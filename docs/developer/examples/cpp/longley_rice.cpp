// The radio model over heights that the host has itself. Needs no application, no settings and no terrain.
#include <zel/longley_rice.h>

#include <cmath>
#include <cstdio>

int main() {
  zel::LongleyRiceRequest request;
  for (int i = 0; i <= 300; ++i)  // 30 km with a ridge of 150 m in the middle
    request.elevationsM.push_back(100 + 150 * std::exp(-std::pow((i - 150) / 15.0, 2)));
  request.spacingM = 100;
  request.transmitterHeightM = 30;
  request.receiverHeightM = 10;
  request.frequencyMhz = 450;
  request.confidence = {0.5, 0.9};
  request.reliability = {0.5, 0.9, 0.99};

  const zel::LongleyRiceResult result = zel::computeLongleyRice(request);
  if (!result.error.empty())
    return std::printf("%s: %s\n", result.parameter.c_str(), result.error.c_str()), 1;
  std::printf("%s, free space %.2f dB\n", zel::pathModeText(result.mode, result.method), result.freeSpaceDb);
  for (std::size_t r = 0; r < request.reliability.size(); ++r)
    for (std::size_t c = 0; c < request.confidence.size(); ++c)
      std::printf("reliability %.2f, confidence %.2f: %.2f dB\n", request.reliability[r],
                  request.confidence[c], result.lossDb[r][c]);
  for (const std::string& warning : result.warnings) std::printf("Warning: %s\n", warning.c_str());

  request.frequencyMhz = -1;
  const zel::LongleyRiceResult wrong = zel::computeLongleyRice(request);
  std::printf("%s: %s\n", wrong.parameter.c_str(), wrong.error.c_str());
}
