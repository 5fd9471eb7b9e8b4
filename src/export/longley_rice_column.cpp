#include "export/longley_rice_column.h"

namespace zel {

double LongleyRiceColumn::lossAt(std::int32_t point) {
  try {
    return model_.lossOver(static_cast<std::size_t>(point));
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(), "The irregular terrain model stopped at point " +
                                           std::to_string(point) + " of the " + exported_ + ": " +
                                           error.description());
  }
}

}  // namespace zel
