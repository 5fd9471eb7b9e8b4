"""The irregular terrain model, version 1.2.2, point to point: an evaluation to hold other evaluations against.

What it computes: the basic transmission loss over a terrain profile, with the intermediate quantities of the model, from the published
equations:
  Algorithm   G. A. Hufford, "The ITS Irregular Terrain Model, version 1.2.2: The Algorithm"
  82-100      Hufford, Longley, Kissick, "A Guide to the Use of the ITS Irregular Terrain Model in the Area Prediction Mode", NTIA Report 82-100
  ESSA 79     Longley and Rice, "Prediction of Tropospheric Radio Transmission Loss Over Irregular Terrain", ESSA Technical Report ERL 79-ITS 67
  TN101       Rice, Longley, Norton, Barsis, "Transmission Loss Predictions for Tropospheric Communication Circuits", NBS Technical Note 101
  Vogler      L. E. Vogler, "Calculation of groundwave attenuation in the far diffraction region", Radio Science 68D, 1964

It goes by a route of its own, so that a slip in one evaluation is not repeated in the other:
  - The older reports' units: distances in km, heights in m, frequency in MHz, the effective radius a in km, angles in rad. Nothing is written in
    wave numbers where those reports have a form in km and MHz (C_0, K and B_0 of TN101 8; v of TN101 7; r of TN101 9; Q of ESSA 79).
  - Terrain analysis in index coordinates; horizons as largest elevation angles; fits by weighted normal equations; deviates and logarithms exact.

Knowing choices:
  - The distance coefficient of the smooth earth is 151.0 (k a)^(1/3) d / a. 151.03 is also quoted, and Vogler's form in km gives
    150.97 to 151.03 depending on the speed of light that is put in; these differ by 0.02 to 0.04 %.
  - The curvature is 157e-9 / m and N_1 = 179.3 (Algorithm), not 1 / 6370 km: the two differ by 0.01 %, enough to move a smooth horizon by one sample.
  - F(theta d) has the Algorithm's figures (133.4, 104.6, 71.8); those of TN101, reduced by 32.45 dB, are up to 0.05 dB smaller.
  - `Figures` holds what the publications print rounded. PRINTED has the rounded figures, EXACT what they were rounded from; the two bound what
    rounding alone can do to a loss. Only the 25.1 of the weight shows: over links with great losses it is some tenths of a decibel.

Everything here is plain double arithmetic without state.
"""
import cmath
import math
from dataclasses import dataclass
from statistics import NormalDist
from typing import Optional


@dataclass(frozen=True)
class Figures:
    """Figures that are printed rounded."""
    megahertz_metres: float  # wave number k = f / this; c / 2 pi in MHz m
    impedance: float  # of free space, ohm
    weight_root: float  # 10 sqrt(2 pi): w = 1 / (1 + 0.1 sqrt(Q)) with k in place of 2 pi / lambda
    roughness_limit: float  # 2 pi 1000: the limit of k Delta h(d)
    half_turn: float  # pi of the two-ray phase, rad


PRINTED = Figures(megahertz_metres=47.70, impedance=376.62, weight_root=25.1, roughness_limit=6283.2, half_turn=3.14)
EXACT = Figures(megahertz_metres=299.792458 / (2 * math.pi), impedance=376.730313668, weight_root=math.sqrt(200 * math.pi),
                roughness_limit=2000 * math.pi, half_turn=math.pi)

SMOOTH_EARTH_DISTANCE = 151.0  # see the head of this file
EARTH_CURVATURE = 157e-6  # of the real earth, 1/km (Algorithm)
STANDARD_RADIUS = 8497.0  # km: C_0 = 1 there (TN101 8)


# ---------------------------------------------------------------------------------------------------------------- small laws

def deviate(fraction):
    """Standard normal deviate whose upper tail holds `fraction` (between 0 and 1)."""
    return -NormalDist().inv_cdf(fraction)


def free_space_loss(distance, frequency):
    """dB; distance in km, frequency in MHz."""
    return 32.45 + 20 * math.log10(frequency) + 20 * math.log10(distance)


def effective_radius(surface_refractivity):
    """a in km (TN101 4.4 with the Algorithm's figures)."""
    return 1 / (EARTH_CURVATURE * (1 - 0.04665 * math.exp(surface_refractivity / 179.3)))


def refractivity_at_surface(elevations, sea_level_refractivity):
    """N_s from N_0 and the mean elevation of the middle four fifths of the profile; scale height 9460 m."""
    n = len(elevations) - 1
    skipped = int(0.1 * n)
    middle = elevations[skipped:n - skipped + 1]
    return sea_level_refractivity * math.exp(-(sum(middle) / len(middle)) / 9460.0)


def irregularity_at(delta_h, distance):
    """Delta h(d) in m; distance in km (ESSA 79)."""
    return delta_h * (1 - 0.8 * math.exp(-distance / 50.0))


def surface_deviation(delta_h, distance):
    """sigma_h(d) in m: 0.78 Delta h(d) exp(-(Delta h(d) / 16 m)^(1/4)) (ESSA 79)."""
    local = irregularity_at(delta_h, distance)
    return 0.78 * local * math.exp(-(local / 16.0) ** 0.25)


def knife_edge(v_squared):
    """Fresnel-integral attenuation A(v, 0) in dB beyond a knife edge (TN101 7, in the ESSA 79 approximation)."""
    if v_squared < 2.4 ** 2:
        v = math.sqrt(v_squared)
        return 6.02 + 9.11 * v - 1.27 * v_squared
    return 12.953 + 10 * math.log10(v_squared)


def smooth_distance_gain(x):
    """G(x_0) = 0.05751 x_0 - 10 log x_0, dB (Vogler)."""
    return 0.05751 * x - 10 * math.log10(x)


def height_gain_kind(x, k):
    """Which piece of F(x, K) holds."""
    if x >= 200:
        return "great height gain"
    return "height gain without K" if k < 1e-5 or x * -math.log(k) ** 3 > 5495 else "height gain with K"


def smooth_height_gain(x, k):
    """F(x, K) in dB (Vogler; Algorithm, height-gain over a smooth earth)."""
    distant = 40 * math.log10(x) - 117 if x > 1 else -117.0
    kind = height_gain_kind(x, k)
    if kind == "height gain without K":
        return distant
    if kind == "height gain with K":
        return 2.5e-5 * x * x / k + 20 * math.log10(k) - 15
    far = smooth_distance_gain(x)
    if x < 2000:
        share = 0.0134 * x * math.exp(-0.005 * x)
        return (1 - share) * far + share * distant
    return far


def scatter_distance(theta_d):
    """F(theta d) in dB with theta d in km, relative to 10 log(f theta^4) (Algorithm; TN101 9.1 less 32.45 dB and 40 log theta d)."""
    log = math.log10(theta_d)
    if theta_d <= 10:
        return 103.4 + 0.332 * theta_d - 10 * log
    if theta_d <= 70:
        return 97.1 + 0.212 * theta_d - 2.5 * log
    return 86.8 + 0.157 * theta_d + 5 * log


FREQUENCY_GAIN = ((24.0, 25.0), (45.0, 80.0), (68.0, 177.0), (80.0, 395.0), (105.0, 705.0))


def frequency_gain_at(r, eta):
    """H_0(r, eta) in dB for one antenna: 10 log(1 + b r^-2 + a r^-4), straight between whole eta from 1 to 5 (TN101 9.2, curve fit)."""
    def at(whole):
        b, a = FREQUENCY_GAIN[whole - 1]
        return 10 * math.log10(1 + b / r ** 2 + a / r ** 4)
    eta = min(max(eta, 1.0), 5.0)
    lower = min(int(eta), 4)
    share = eta - lower
    return (1 - share) * at(lower) + share * at(lower + 1)


# ---------------------------------------------------------------------------------------------------------- terrain analysis

@dataclass
class Horizons:
    indexes: list  # sample of each end's horizon; None: the other antenna is seen
    angles: list  # rad above the horizontal at each antenna
    distances: list  # in intervals from each end
    margin: float  # rad: how far each choice is from another one


def find_horizons(elevations, spacing, heights, radius):
    """Each end's horizon: the sample at the largest elevation angle, where that exceeds the other antenna's.

    On a tie it is the sample nearer to the first end, for both ends.

    Cost: one pass over the profile and end.
    """
    n = len(elevations) - 1
    tops = (elevations[0] + heights[0], elevations[-1] + heights[1])
    indexes, angles, distances, margin = [], [], [], math.inf
    for own in (0, 1):
        best = (tops[1 - own] - tops[own]) / (n * spacing) - n * spacing / (2000 * radius)
        second = -math.inf
        found = None
        for i in range(1, n):
            reach = (i if own == 0 else n - i) * spacing
            angle = (elevations[i] - tops[own]) / reach - reach / (2000 * radius)
            if angle > best:
                best, second, found = angle, best, i
            else:
                second = max(second, angle)
        indexes.append(found)
        angles.append(best)
        distances.append(n if found is None else found if own == 0 else n - found)
        margin = min(margin, best - second)
    return Horizons(indexes, angles, distances, margin)


def fit_limits(first, last, n):
    """Whole indexes of a fit from position `first` to `last` of n intervals: rounded outwards on the left, and to the right by what is left over."""
    start = int(max(first, 0.0))
    stop = n - int(max(n - last, 0.0))
    if stop <= start:
        start = max(start - 1, 0)
        stop = n - max(n - (stop + 1), 0)
    return start, stop


def straight_line(samples, first, last):
    """Least-squares line between two positions, the end samples with half weight; its values at the first and last sample of the whole profile.

    Positions in intervals.
    """
    n = len(samples) - 1
    start, stop = fit_limits(first, last, n)
    weights = [1.0] * (stop - start + 1)
    weights[0] = weights[-1] = 0.5
    total = math.fsum(weights)
    centre = math.fsum(w * i for w, i in zip(weights, range(start, stop + 1))) / total
    mean = math.fsum(w * samples[i] for w, i in zip(weights, range(start, stop + 1))) / total
    square = math.fsum(w * (i - centre) ** 2 for w, i in zip(weights, range(start, stop + 1)))
    product = math.fsum(w * (i - centre) * (samples[i] - mean) for w, i in zip(weights, range(start, stop + 1)))
    slope = product / square
    return mean - slope * centre, mean + slope * (n - centre)


def terrain_irregularity(elevations, spacing, first, last):
    """Delta h in m between two positions (in intervals): interdecile range of the detrended terrain, raised to its value far away.

    The stretch is resampled to 10 k - 5 points, k between 4 and 25; the k-th largest less the k-th smallest stands for the deciles.
    """
    n = len(elevations) - 1
    if last - first < 2:
        return 0.0
    decile = min(max(int(0.1 * (last - first + 8)), 4), 25)
    count = 10 * decile - 5
    step = (last - first) / (count - 1)
    samples = []
    for j in range(count):
        position = first + j * step
        right = min(max(math.ceil(position - 1e-12), int(first) + 1), n)
        samples.append(elevations[right] + (elevations[right] - elevations[right - 1]) * (position - right))
    at_first, at_last = straight_line(samples, 0, count - 1)
    deviations = sorted(z - at_first - (at_last - at_first) * j / (count - 1) for j, z in enumerate(samples))
    span = (last - first) * spacing / 1000
    return (deviations[count - decile] - deviations[decile - 1]) / (1 - 0.8 * math.exp(-span / 50))


@dataclass
class Path:
    """What the loss depends on; distances in km, heights in m, angles in rad."""
    distance: float
    frequency: float
    surface_refractivity: float
    radius: float
    heights: list  # structural
    impedance: complex  # of the ground, relative
    figures: Figures
    mode: str = ""
    delta_h: float = 0.0
    effective: Optional[list] = None
    horizon: Optional[list] = None  # d_L
    angle: Optional[list] = None  # theta_e
    horizon_margin: float = math.inf  # rad between each horizon and the next best sample
    limit_margin: float = math.inf  # intervals between the limits of the fits and the nearest sample
    branch: tuple = ()  # which way each choice of the model went

    @property
    def wave_number(self):  # 1/m
        return self.frequency / self.figures.megahertz_metres

    @property
    def smooth(self):  # d_Ls of each end
        return [math.sqrt(0.002 * self.radius * h) for h in self.effective]

    @property
    def total_horizon(self):  # d_L
        return sum(self.horizon)

    @property
    def total_smooth(self):  # d_Ls
        return sum(self.smooth)

    @property
    def total_angle(self):  # theta_e, not less than what brings the scatter angle to 0 at d_L
        return max(sum(self.angle), -self.total_horizon / self.radius)


def ground_impedance(path_frequency, vertical, permittivity, conductivity, figures):
    """Relative surface impedance of the ground; TN101's loss term x = 18000 sigma / f is here Z_0 sigma / k."""
    loss_term = figures.impedance * figures.megahertz_metres * conductivity / path_frequency
    relative = complex(permittivity, loss_term)
    root = cmath.sqrt(relative - 1)
    return root / relative if vertical else root


def analyse_terrain(path, elevations, spacing):
    """Fills the terrain quantities of the path (Algorithm, point-to-point mode)."""
    n = len(elevations) - 1
    found = find_horizons(elevations, spacing, path.heights, path.radius)
    near = [min(15 * height / spacing, 0.1 * reach) for height, reach in zip(path.heights, found.distances)]
    path.delta_h = terrain_irregularity(elevations, spacing, near[0], n - near[1])
    positions = list(near)
    if sum(found.distances) > 1.5 * n:
        path.mode = "line of sight"
        at_first, at_last = straight_line(elevations, near[0], n - near[1])
        path.effective = raised(path.heights, elevations, at_first, at_last)
        smooth_earth_horizons(path)
    else:
        path.mode = "single horizon" if found.indexes[0] == found.indexes[1] else "double horizon"
        at_first, _ = straight_line(elevations, near[0], 0.9 * found.distances[0])
        _, at_last = straight_line(elevations, n - 0.9 * found.distances[1], n - near[1])
        path.effective = raised(path.heights, elevations, at_first, at_last)
        path.horizon = [reach * spacing / 1000 for reach in found.distances]
        path.angle = found.angles
        positions += [0.9 * reach for reach in found.distances]
    path.horizon_margin = found.margin
    path.limit_margin = min(abs(p - round(p)) for p in positions)


def raised(heights, elevations, at_first, at_last):
    """Effective heights: structural height and what the ground stands above its fit."""
    return [heights[0] + max(elevations[0] - at_first, 0.0), heights[1] + max(elevations[-1] - at_last, 0.0)]


def smooth_earth_horizons(path):
    """Horizons of a path within sight as statistics of the terrain have them (ESSA 79); the effective heights grow until they see each other."""
    def reach(height):
        return math.sqrt(0.002 * path.radius * height) * math.exp(-0.07 * math.sqrt(path.delta_h / max(height, 5.0)))
    path.horizon = [reach(h) for h in path.effective]
    short = path.distance >= path.total_horizon
    if short:
        growth = (path.distance / path.total_horizon) ** 2
        path.effective = [h * growth for h in path.effective]
        path.horizon = [reach(h) for h in path.effective]
    # theta_e = 0.0005 / d_Ls (1.3 (d_Ls / d_L - 1) Delta h - 4 h_e), ESSA 79 in km and m
    path.angle = [0.0005 / s * (1.3 * (s / d - 1) * path.delta_h - 4 * h)
                  for s, d, h in zip(path.smooth, path.horizon, path.effective)]
    path.branch += ("heights grown" if short else "heights as they are",)


# ---------------------------------------------------------------------------------------------------------------- diffraction

def smooth_earth_term(path, radius, distance):
    """x = B_0 C_0^2 f^(1/3) d and K for one of Vogler's three radii (TN101 8); radius and distance in km."""
    # 1.0 with c in full and 151.03 in place of 151.0
    scale = SMOOTH_EARTH_DISTANCE * (1000 * STANDARD_RADIUS / path.figures.megahertz_metres) ** (1 / 3) / STANDARD_RADIUS
    c_0 = (STANDARD_RADIUS / radius) ** (1 / 3)
    cube_root = path.frequency ** (1 / 3)
    # 0.017778 C_0 f^(-1/3) [(eps - 1)^2 + x^2]^(-1/4) for horizontal polarization, times [eps^2 + x^2]^(1/2) for vertical
    k = (path.figures.megahertz_metres / (1000 * STANDARD_RADIUS)) ** (1 / 3) * c_0 / cube_root / abs(path.impedance)
    return scale * (1.607 - k) * c_0 ** 2 * cube_root * distance, k


def clutter_factor(path):
    """A_fo in dB, at most 15."""
    deviation = surface_deviation(path.delta_h, path.total_smooth)
    return min(15.0, 5 * math.log10(1 + 4.77e-4 * path.heights[0] * path.heights[1] * path.wave_number * deviation))


def rounded_earth(path, distance):
    """A_r in dB: Vogler's three radii, the ends' from their horizons and the middle's from the scatter angle."""
    gain, x_ends = 0.0, 0.0
    for horizon, height in zip(path.horizon, path.effective):
        x, k = smooth_earth_term(path, horizon ** 2 / (0.002 * height), horizon)
        if x <= 0:
            raise ValueError("outside the range of the smooth-earth approximation: K of an end is above 1.607")
        gain += smooth_height_gain(x, k)
        x_ends += x
        path.branch += (x < 2000, height_gain_kind(x, k))
    between = distance - path.total_horizon
    angle = path.total_angle + distance / path.radius
    x_between, _ = smooth_earth_term(path, between / angle, between)
    return smooth_distance_gain(x_between + x_ends) - gain - 20


def two_knife_edges(path, distance):
    """A_k in dB; v = 1.2915 theta (f d_L1 (d - d_L) / (d - d_L + d_L1))^(1/2) in km and MHz (ESSA 79)."""
    between = distance - path.total_horizon
    angle = path.total_angle + distance / path.radius
    # 1.668 in full: 1.2915^2, which is 1000 m/km / (2 c)
    coefficient = 1000 / (4 * math.pi * path.figures.megahertz_metres)
    return sum(knife_edge(coefficient * path.frequency * angle ** 2 * between * horizon / (between + horizon))
               for horizon in path.horizon)


def smooth_share(path, distance):
    """w, the rounded earth's share (ESSA 79): 1 / (1 + 0.1 Q^(1/2)), with C = 10 m^2 as the path's ends are known."""
    roughness = min(path.wave_number * irregularity_at(path.delta_h, distance), path.figures.roughness_limit)
    structural = path.heights[0] * path.heights[1] + 10.0
    effective = path.effective[0] * path.effective[1] + 10.0
    ratio = math.sqrt(effective / structural)
    bend = (path.total_angle * path.radius + path.total_horizon) / distance
    return path.figures.weight_root / (path.figures.weight_root + math.sqrt(roughness * (ratio + bend)))


def diffraction_attenuation(path, distance):
    """A_diff in dB relative to free space."""
    share = smooth_share(path, distance)
    return share * rounded_earth(path, distance) + (1 - share) * two_knife_edges(path, distance) + clutter_factor(path)


@dataclass
class Line:
    """Attenuation a + slope d; dB, km."""
    at_zero: float
    slope: float

    def at(self, distance):
        return self.at_zero + self.slope * distance


def line_scale(path):
    """X_ae in km: the distance over which diffraction is drawn as a line, (k / a^2)^(-1/3)."""
    return (path.wave_number * 1000 / path.radius ** 2) ** (-1 / 3)


def diffraction_line(path):
    """The line through A_diff at d_3 and d_4."""
    d_3 = max(path.total_smooth, path.total_horizon + 1.3787 * line_scale(path))
    d_4 = d_3 + 2.7574 * line_scale(path)
    a_3, a_4 = diffraction_attenuation(path, d_3), diffraction_attenuation(path, d_4)
    slope = (a_4 - a_3) / (d_4 - d_3)
    return Line(a_3 - slope * d_3, slope)


# -------------------------------------------------------------------------------------------------------------- line of sight

def two_ray(path, distance):
    """A_t in dB: direct and reflected ray, the reflection weakened by rough ground but never below a diffuse least."""
    height_sum = (path.effective[0] + path.effective[1]) / 1000
    sine = height_sum / math.hypot(distance, height_sum)
    weakening = math.exp(-min(10.0, path.wave_number * surface_deviation(path.delta_h, distance) * sine))
    reflection = (sine - path.impedance) / (sine + path.impedance) * weakening
    strength = abs(reflection)
    diffuse = strength < max(0.5, math.sqrt(sine))
    if diffuse:
        reflection *= math.sqrt(sine) / strength
    path.branch += (diffuse,)
    phase = 2 * path.wave_number * path.effective[0] * path.effective[1] / (1000 * distance)
    quarter = path.figures.half_turn / 2
    if phase > quarter:  # the lobes near by are levelled off
        phase = path.figures.half_turn - quarter ** 2 / phase
    return -20 * math.log10(abs(1 + reflection * cmath.exp(1j * phase)))


def line_of_sight_attenuation(path, line, distance):
    """A_los in dB: two rays over smooth ground, the extended diffraction line over rough."""
    # D_1 = 47.7 m as the Algorithm has it; some print its inverse as 0.021, which moves losses by up to 0.035 dB
    share = 1 / (1 + 47.7 * path.wave_number * path.delta_h / (1000 * max(10.0, path.total_smooth)))
    return share * two_ray(path, distance) + (1 - share) * line.at(distance)


@dataclass
class SightCurve:
    """A_el + k_1 d + k_2 ln d; dB, km."""
    constant: float
    k_1: float
    k_2: float

    def at(self, distance):
        return self.constant + self.k_1 * distance + self.k_2 * math.log(distance)


def sight_curve(path, line):
    """The curve through A_los at d_0 and d_1 and the diffraction line at d_Ls; without its logarithm where that would bend the wrong way."""
    d_2 = path.total_smooth
    a_2 = line.at(d_2)
    d_0 = 1.908 * path.wave_number * path.effective[0] * path.effective[1] / 1000
    if line.at_zero >= 0:
        d_0 = min(d_0, 0.5 * path.total_horizon)
        d_1 = d_0 + 0.25 * (path.total_horizon - d_0)
    else:
        d_1 = max(-line.at_zero / line.slope, 0.25 * path.total_horizon)
    a_1 = line_of_sight_attenuation(path, line, d_1)
    k_1, k_2, curved = 0.0, 0.0, False
    if d_0 < d_1:
        a_0 = line_of_sight_attenuation(path, line, d_0)
        whole = math.log(d_2 / d_0)
        k_2 = max(0.0, ((d_2 - d_0) * (a_1 - a_0) - (d_1 - d_0) * (a_2 - a_0))
                  / ((d_2 - d_0) * math.log(d_1 / d_0) - (d_1 - d_0) * whole))
        curved = line.at_zero >= 0 or k_2 > 0
        if curved:
            k_1 = (a_2 - a_0 - k_2 * whole) / (d_2 - d_0)
            if k_1 < 0:
                k_1 = 0.0
                k_2 = max(a_2 - a_0, 0.0) / whole
                if k_2 == 0:
                    k_1 = line.slope
    if not curved:
        k_2 = 0.0
        k_1 = max(a_2 - a_1, 0.0) / (d_2 - d_1)
        if k_1 == 0:
            k_1 = line.slope
    path.branch += (line.at_zero >= 0, d_0 < d_1, curved, k_1 == line.slope, k_2 > 0)
    return SightCurve(a_2 - k_1 * d_2 - k_2 * math.log(d_2), k_1, k_2)


# -------------------------------------------------------------------------------------------------------------- troposcatter

def frequency_gain(path, distance):
    """H_0 in dB (TN101 9.2), or None where both antennas are too low for it: r_1 and r_2 below 0.2."""
    difference = path.horizon[0] - path.horizon[1]
    ratio = path.effective[1] / path.effective[0]
    if difference < 0:
        difference, ratio = -difference, 1 / ratio
    angle = sum(path.angle) + distance / path.radius
    # 41.92 f theta h with the height in km
    r_1, r_2 = (2 * path.wave_number * h * angle for h in path.effective)
    if r_1 < 0.2 and r_2 < 0.2:
        return None
    s = (distance - difference) / (distance + difference)
    q = min(max(0.1, ratio / s), 10.0)
    s = max(0.1, s)
    h_0 = (distance - difference) * (distance + difference) * angle / (4 * distance)  # crossover height, km
    n_s = path.surface_refractivity
    eta = (h_0 / 1.7556) * (1 + (0.031 - 2.32e-3 * n_s + 5.67e-6 * n_s ** 2) * math.exp(-min(1.7, h_0 / 8) ** 6))
    limited = max(eta, 1.0)
    path.branch += ("scattering low" if eta < 1 else "scattering high" if eta > 3 else "scattering between",)
    gain = (frequency_gain_at(r_1, limited) + frequency_gain_at(r_2, limited)) / 2
    gain += min(gain, 6 * (0.6 - math.log10(limited)) * math.log10(s) * math.log10(q))
    gain = max(gain, 0.0)
    if eta < 1:
        two = math.sqrt(2)
        at_zero = 10 * math.log10(((1 + two / r_1) * (1 + two / r_2)) ** 2 * (r_1 + r_2) / (r_1 + r_2 + 2 * two))
        gain = eta * gain + (1 - eta) * at_zero
    return gain


def scatter_attenuation(path, distance, gain):
    angle = path.total_angle + distance / path.radius
    theta_d = angle * distance
    path.branch += ("scatter angle small" if theta_d <= 10 else "scatter angle middling" if theta_d <= 70 else "scatter angle great",)
    return (scatter_distance(theta_d) + 10 * math.log10(path.frequency * angle ** 4)
            - 0.1 * (path.surface_refractivity - 301) * math.exp(-theta_d / 40) + gain)


def scatter_line(path):
    """The line through A_scat at d_L + 200 km and d_L + 400 km, or None where scatter is not defined.

    The frequency gain of the farther distance also serves the nearer one where either is more than 15 dB.
    """
    d_5 = path.total_horizon + 200
    d_6 = d_5 + 200
    gain_6 = frequency_gain(path, d_6)
    gain_5 = gain_6 if gain_6 is not None and gain_6 > 15 else frequency_gain(path, d_5)
    if gain_5 is None:
        path.branch += ("no scatter",)
        return None
    taken_over = gain_5 > 15 and gain_6 is not None
    if taken_over:
        gain_5 = gain_6
    path.branch += ("gain taken over" if taken_over else "gain at both",)
    a_5, a_6 = scatter_attenuation(path, d_5, gain_5), scatter_attenuation(path, d_6, gain_6)
    slope = (a_6 - a_5) / 200
    return Line(a_5 - slope * d_5, slope)


# ------------------------------------------------------------------------------------------------------ reference attenuation

@dataclass
class Reference:
    attenuation: float  # dB
    method: str
    join: float  # d_Ls or d_x, km
    curve: Optional[SightCurve] = None


def reference_attenuation(path):
    """A_ref, never below 0, from the formula of the range that the distance falls in."""
    line = diffraction_line(path)
    if path.distance < path.total_smooth:
        curve = sight_curve(path, line)
        return Reference(max(curve.at(path.distance), 0.0), "line of sight", path.total_smooth, curve)
    scatter = scatter_line(path)
    join = 10000.0
    if scatter is not None:
        crossing = (scatter.at_zero - line.at_zero) / (line.slope - scatter.slope)
        join = max(path.total_smooth, path.total_horizon + 0.3 * line_scale(path) * math.log(path.frequency), crossing)
        # The line is hung on the diffraction line at d_x, wherever that is.
        scatter = Line((line.slope - scatter.slope) * join + line.at_zero, scatter.slope)
    if path.distance > join:
        return Reference(max(scatter.at(path.distance), 0.0), "troposcatter", join)
    return Reference(max(line.at(path.distance), 0.0), "diffraction", join)


# ---------------------------------------------------------------------------------------------------------------- variability

@dataclass(frozen=True)
class Bump:
    """(c_1 + c_2 / (1 + ((d_e - x_2) / x_3)^2)) (d_e / x_1)^2 / (1 + (d_e / x_1)^2); dB, km."""
    c_1: float
    c_2: float
    x_1: float
    x_2: float
    x_3: float

    def at(self, distance):
        rise = (distance / self.x_1) ** 2
        return (self.c_1 + self.c_2 / (1 + ((distance - self.x_2) / self.x_3) ** 2)) * rise / (1 + rise)


@dataclass(frozen=True)
class Resonance:
    """c_1 + c_2 / (1 + (c_3 ln(0.133 k))^2), dimensionless."""
    c_1: float
    c_2: float
    c_3: float

    def at(self, wave_number):
        return self.c_1 + self.c_2 / (1 + (self.c_3 * math.log(0.133 * wave_number)) ** 2)


@dataclass(frozen=True)
class Climate:
    median: Bump  # V_med
    below: Bump  # sigma_T-, of times that are worse than the median
    above: Bump  # sigma_T+
    ducting_share: float  # C_D: sigma_TD = C_D sigma_T+
    ducting_from: float  # z_D
    below_gain: Resonance  # g-
    above_gain: Resonance  # g+


FLAT = Resonance(1.0, 0.0, 0.0)
CLIMATES = {
    1: Climate(Bump(-9.67, 12.7, 144.9, 190.3, 133.8), Bump(2.13, 159.5, 762.2, 123.6, 94.5), Bump(2.11, 102.3, 636.9, 134.8, 95.6),
               1.224, 1.282, FLAT, FLAT),  # equatorial
    2: Climate(Bump(-0.62, 9.19, 228.9, 205.2, 143.6), Bump(2.66, 7.67, 100.4, 172.5, 136.4), Bump(6.87, 15.53, 138.7, 143.7, 98.6),
               0.801, 2.161, FLAT, Resonance(0.93, 0.31, 2.00)),  # continental subtropical
    3: Climate(Bump(1.26, 15.5, 262.6, 185.2, 99.8), Bump(6.11, 6.65, 138.2, 242.2, 178.6), Bump(10.08, 9.60, 165.3, 225.7, 129.7),
               1.380, 1.282, FLAT, FLAT),  # maritime subtropical
    4: Climate(Bump(-9.21, 9.05, 84.1, 101.1, 98.6), Bump(1.98, 13.11, 139.1, 132.7, 193.5), Bump(3.68, 159.3, 464.4, 93.1, 94.2),
               1.000, 20.0, FLAT, Resonance(0.93, 0.19, 1.79)),  # desert
    5: Climate(Bump(-0.62, 9.19, 228.9, 205.2, 143.6), Bump(2.68, 7.16, 93.7, 186.8, 133.5), Bump(4.75, 8.12, 93.2, 135.9, 113.4),
               1.224, 1.282, Resonance(0.92, 0.25, 1.77), Resonance(0.93, 0.31, 2.00)),  # continental temperate
    6: Climate(Bump(-0.39, 2.86, 141.7, 315.9, 167.4), Bump(6.86, 10.38, 187.8, 169.6, 108.9), Bump(8.58, 13.97, 216.0, 152.0, 122.7),
               1.518, 1.282, FLAT, FLAT),  # maritime temperate over land
    7: Climate(Bump(3.15, 857.9, 2222.0, 164.8, 116.3), Bump(8.51, 169.8, 609.8, 119.9, 106.6), Bump(8.43, 8.19, 136.2, 188.5, 122.9),
               1.518, 1.282, FLAT, FLAT),  # maritime temperate over sea
}


def effective_distance(path):
    """d_e in km (Algorithm, variability; TN101 10): 130 km where the scatter angle is that of two horizons over a smooth earth of 9000 km."""
    smooth = sum(math.sqrt(18.0 * h) for h in path.effective) + (575.7e3 / path.wave_number) ** (1 / 3)
    if path.distance < smooth:
        return 130 * path.distance / smooth
    return 130 + path.distance - smooth


class Variability:
    """Attenuation at a time deviate (reliability) and a situation deviate (confidence); mobile mode without variability of location."""

    def __init__(self, path, climate):
        law = CLIMATES[climate]
        distance = effective_distance(path)
        self.median = law.median.at(distance)
        self.below = law.below.at(distance) * law.below_gain.at(path.wave_number)
        self.above = law.above.at(distance) * law.above_gain.at(path.wave_number)
        self.ducting_from = law.ducting_from
        self.ducting = self.above * law.ducting_share
        self.situation = 5 + 3 * math.exp(-distance / 100)

    def time_deviation(self, z):
        """sigma_T in dB at a deviate: three straight pieces of Y_T = sigma_T z."""
        if z < 0:
            return self.below
        if z <= self.ducting_from:
            return self.above
        return self.ducting + (self.above - self.ducting) * self.ducting_from / z

    def attenuation(self, reference, time, situation):
        swing = self.time_deviation(time) * time
        spread = math.sqrt(self.situation ** 2 + swing ** 2 / (7.8 + situation ** 2))
        value = reference - self.median - swing - spread * situation
        # Gain over free space is compressed to 2.9 dB and little more.
        return value if value >= 0 else value * (29 - value) / (29 - 10 * value)


# ------------------------------------------------------------------------------------------------------------------- together

def prepare(elevations, spacing, tx, rx, frequency, polarization, permittivity, conductivity, surface_refractivity, figures):
    path = Path(distance=(len(elevations) - 1) * spacing / 1000, frequency=frequency, surface_refractivity=surface_refractivity,
                radius=effective_radius(surface_refractivity), heights=[tx, rx],
                impedance=ground_impedance(frequency, polarization == "vertical", permittivity, conductivity, figures), figures=figures)
    analyse_terrain(path, elevations, spacing)
    return path


def mode_text(mode, method):
    """What the ends see, and past a horizon what carries the signal: diffraction wherever scatter does not."""
    if mode == "line of sight":
        return mode
    return f"{mode}, {'troposcatter' if method == 'troposcatter' else 'diffraction'} dominant"


def analyse(elevations, spacing, tx, rx, frequency, polarization, climate, permittivity, conductivity, surface_refractivity,
            confidences, reliabilities, figures=PRINTED):
    """Result as `evaluate` has it, with the path and the reference attenuation that led to it."""
    path = prepare(elevations, spacing, tx, rx, frequency, polarization, permittivity, conductivity, surface_refractivity, figures)
    reference = reference_attenuation(path)
    variability = Variability(path, climate)
    free_space = free_space_loss(path.distance, frequency)
    result = {
        "free_space_db": free_space,
        "method": reference.method,
        "mode": mode_text(path.mode, reference.method),
        "delta_h_m": path.delta_h,
        "effective_heights_m": list(path.effective),
        "horizon_distances_m": [1000 * d for d in path.horizon],
        "horizon_angles_rad": list(path.angle),
        "surface_refractivity": surface_refractivity,
        "reference_attenuation_db": reference.attenuation,
        "confidence": list(confidences),
        "reliability": list(reliabilities),
        "loss_db": [[free_space + variability.attenuation(reference.attenuation, deviate(time), deviate(situation))
                     for situation in confidences] for time in reliabilities],
    }
    return result, path, reference


def evaluate(elevations, spacing, tx, rx, frequency, polarization, climate, permittivity, conductivity, surface_refractivity,
             confidences, reliabilities, figures=PRINTED):
    """Loss and intermediate quantities of a link.

    Elevations in m, the transmitter's first, `spacing` m apart; antenna heights tx and rx above ground in m; frequency in MHz; polarization
    "horizontal" or "vertical"; climate 1 to 7; conductivity in S/m; surface refractivity in N-units; confidences and reliabilities as fractions
    between 0 and 1. loss_db has a row for each reliability and a column for each confidence.
    """
    return analyse(elevations, spacing, tx, rx, frequency, polarization, climate, permittivity, conductivity, surface_refractivity,
                   confidences, reliabilities, figures)[0]
