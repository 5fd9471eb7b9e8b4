"""The paths that the program and the second evaluation are held against each other on: the same at every run."""
import math
import random
from dataclasses import dataclass, field

from diffraction import Ground

SEED = 526


@dataclass
class Path:
    spacing: float  # km
    heights: list  # m above sea level
    tx: float  # m above sea level
    rx: float  # m above ground
    frequency: float  # MHz
    ground: Ground = field(default_factory=Ground)
    radius: float = 8500.0  # km
    category: int = 0
    cover: float = 0.0  # m, 0 for the category's

    def line(self):
        """As the program reads it: one line of blank-separated numbers."""
        numbers = [self.spacing, self.tx, self.rx, self.frequency, self.radius, int(self.ground.vertical), self.ground.permittivity,
                   self.ground.conductivity, self.category, self.cover, len(self.heights)] + self.heights
        return " ".join(repr(number) for number in numbers)


def eighths(height):
    """Exact also as a 32-bit float."""
    return round(height * 8) / 8


def terrain(rng, samples):
    relief = 10 ** rng.uniform(0, 3)
    kind = rng.randrange(6)
    if kind == 0:
        heights = [rng.uniform(0, 400)] * samples
    elif kind == 1:
        heights, height = [], rng.uniform(0, 800)
        for _ in range(samples):
            heights.append(height)
            height += rng.uniform(-1, 1) * relief / 10
    elif kind == 2:
        waves, phase = rng.uniform(0.5, 20), rng.uniform(0, 6)
        heights = [relief * math.sin(phase + waves * 6.28 * i / samples) for i in range(samples)]
    elif kind == 3:
        heights = [rng.uniform(0, relief) for _ in range(samples)]
    elif kind == 4:
        peak = rng.randrange(samples)
        heights = [relief * math.exp(-abs(i - peak) * 20 / samples) for i in range(samples)]
    else:
        heights = [relief * i / samples for i in range(samples)]
        if rng.random() < 0.5:
            heights.reverse()
    return [eighths(height) for height in heights]


def examples():
    rng = random.Random(SEED)
    result = []
    for number in range(600):
        samples = rng.choice((2, 3, 4, 10)) if number % 5 == 0 else rng.randrange(5, 400)
        heights = terrain(rng, samples)
        path = Path(
            spacing=10 ** rng.uniform(-2, 0.3), heights=heights, tx=heights[0] + eighths(10 ** rng.uniform(0, 2.7)),
            rx=eighths(10 ** rng.uniform(0, 2)), frequency=10 ** rng.uniform(1.3, 4.3),
            ground=rng.choice((Ground(), Ground(True), Ground(True, 80.0, 5.0), Ground(False, 80.0, 5.0), Ground(True, 3.0, 1e-4))),
            radius=rng.choice((8500.0, 8500.0, 6371.0, 4000.0, 20000.0)))
        if number % 3 == 0:
            path.category = rng.randrange(1, 6)
            path.cover = rng.choice((0.0, 0.0, 7.5, 25.0))
            path.frequency = rng.choice((30.0, 100.0, 450.0, 950.0, 3000.0, 29.9, 3001.0))
        if number % 11 == 0:
            path.rx = 0.0
        if number % 13 == 0:
            path.tx = heights[0]
        result.append(path)
    return result
