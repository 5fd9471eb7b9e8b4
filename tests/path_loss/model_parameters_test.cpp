#include "profile/path_loss/model_parameters.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

TEST(ModelParameters, TakeTheStoredValuesAndTurnTheLevelsIntoDeviates) {
  const ModelParameters parameters = modelParameters({-3, 7, 80, 5, 350, 10, 0.9}, InitNormalDist());
  EXPECT_EQ(parameters, (ModelParameters{-3, 7, 80, 5, 350, 1.28, -1.28}));
}

TEST(ModelParameters, KeepThe64BitsOfWhatIsStored) {
  const ModelParameters parameters = modelParameters({0, 5, 15.3, 0.005, 301.7, 0.5, 0.5}, InitNormalDist());
  EXPECT_EQ(parameters.permittivity, 15.3);
  EXPECT_EQ(parameters.conductivity, 0.005);
  EXPECT_EQ(parameters.refractivity, 301.7);
}

TEST(ModelParameters, TakeEachLevelByItself) {
  const NormalTable table = InitNormalDist();
  EXPECT_EQ(modelParameters({0, 5, 15, 0.005, 301, 0.5, 1000}, table).confidence, 0);
  EXPECT_EQ(modelParameters({0, 5, 15, 0.005, 301, 0.5, 1000}, table).reliability, 1.28);
  EXPECT_THROW(modelParameters({0, 5, 15, 0.005, 301, 1, 0.5}, table), RuntimeError);
  EXPECT_THROW(modelParameters({0, 5, 15, 0.005, 301, 0.5, 1}, table), RuntimeError);
}

}  // namespace
}  // namespace zel
