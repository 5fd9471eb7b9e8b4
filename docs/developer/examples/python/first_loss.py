"""The smallest host in Python: the losses of paths."""
import zelprofiler01 as zel

# Latitude, longitude and antenna height (metres above ground) of both stations, then MHz.
print(f"{zel.get_path_loss(36.40, -84.35, 30, 36.22, -84.12, 30, 450):.1f} dB")

try:
    zel.get_path_loss(50, 10, 30, 50.1, 10, 30, 450)
except zel.TerrainError as error:
    print(error.status, error)
