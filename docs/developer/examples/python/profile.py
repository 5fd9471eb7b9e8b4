"""The profile of a path, what it was computed from, and its picture."""
import zelprofiler01 as zel

path = zel.profile(36.4408, -84.3433, 30, 36.1842, -84.1283, 30, k=4 / 3, frequency=450)
print(f"{path.distance_km:.3f} km, {path.verdict}, worst {path.worst.clearance_m:.1f} m at {path.worst.distance_km:.3f} km")
for i in range(0, path.points, 250):
    print(f"{path.distances_km[i]:7.3f} km  ground {path.ground_m[i]:6.1f} m  clearance {path.clearance_m[i]:6.1f} m")
print("Terrain:", path.terrain.source_name, "(the bundled sample)" if path.terrain.bundled_sample else "")
for note in path.notes:
    print("Note:", note)

zel.plot("profile.png", 36.40, -84.35, 30, 36.22, -84.12, 30, size=(800, 300), scale=2, markers_km=[10])
