"""A thousand paths in one call, and from eight threads: arrays in, arrays out."""
import concurrent.futures

import numpy
import zelprofiler01 as zel

latitudes = numpy.linspace(36.20, 36.40, 1000)
losses = zel.get_path_loss(36.40, -84.35, 30, latitudes, -84.12, 30, 450)
print(losses.shape, numpy.round(losses[[0, -1]], 1))

# A path that cannot be computed is NaN among many; each thread takes a part of them.
latitudes[500] = 50
with concurrent.futures.ThreadPoolExecutor(8) as threads:
    parts = threads.map(lambda part: zel.get_path_loss(36.40, -84.35, 30, part, -84.12, 30, 450),
                        numpy.array_split(latitudes, 8))
    again = numpy.concatenate(list(parts))
print(numpy.isnan(again).sum(), "without a loss, the others", "as before" if numpy.nanmax(abs(again - losses)) == 0 else "not")
