"""The radio model over heights of one's own, for all levels at once."""
import numpy
import zelprofiler01 as zel

ridge = 100 + 150 * numpy.exp(-(((numpy.arange(301) - 150) / 15.0) ** 2))  # 30 km, a height every 100 m
losses = zel.longley_rice(ridge, 100, tx=30, rx=10, frequency=450,
                          reliability=[0.5, 0.9, 0.99], confidence=[0.5, 0.9])
print(numpy.round(losses, 2))

full = zel.longley_rice(ridge, 100, 30, 10, 450, full=True)
print(full.mode, f"{full.loss_db:.2f} dB, free space {full.free_space_db:.2f} dB")

try:
    zel.longley_rice(ridge, 100, 30, 10, -1)
except zel.PathError as error:
    print(error.parameter, "-", error)
