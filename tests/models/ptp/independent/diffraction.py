"""Point-to-point diffraction and clutter loss, a second time: Recommendations ITU-R P.526 (sections 3.1.1, 3.2, 4.1, 4.5 and the attachment on
effective antenna heights) and ITU-R P.2108 (section 3.1), by another route than the program's.

It goes the plain way: lists of distances and heights, each formula over all of them, nothing kept. That finds mistakes of the program's
searches, sums and planes; a formula that is misread in both is for diffraction_check.py, which knows the physics behind them. Heights h_i are metres above sea level,
distances d_i kilometres from the transmitter, the wavelength metres, losses dB. Maxima over the profile leave out its two ends.
"""
import math
from dataclasses import dataclass

LIGHT = 299.792458  # m times MHz
NO_LOSS = -999.0  # dB, where the clutter correction has no value


@dataclass
class Figures:
    """The scales of length and height over the spherical earth: as printed for practical units, or from their definitions."""
    printed: bool

    def admittance(self, radius, frequency):
        """(2 pi a / lambda)^(-1/3), times what the unit of each symbol asks for."""
        if self.printed:
            return 0.36 * (radius * frequency) ** (-1 / 3)
        return (2 * math.pi * radius * 1000 * frequency / LIGHT) ** (-1 / 3)

    def ground_loss(self, conductivity, frequency):
        return 18000 * conductivity / frequency if self.printed else 60 * LIGHT / frequency * conductivity

    def length(self, radius, frequency):
        """X of one kilometre without beta."""
        if self.printed:
            return 2.188 * frequency ** (1 / 3) * radius ** (-2 / 3)
        return (math.pi * frequency / (LIGHT * (1000 * radius) ** 2)) ** (1 / 3) * 1000

    def height(self, radius, frequency):
        """Y of one metre without beta."""
        if self.printed:
            return 9.575e-3 * frequency ** (2 / 3) * radius ** (-1 / 3)
        return 2 * (math.pi ** 2 * frequency ** 2 / (LIGHT ** 2 * 1000 * radius)) ** (1 / 3)


PRINTED, EXACT = Figures(True), Figures(False)


@dataclass
class Ground:
    vertical: bool = False
    permittivity: float = 15.0
    conductivity: float = 0.005  # S/m


# ------------------------------------------------------------------------------------------------------------------- knife edge


def knife_edge(nu):
    """J(nu), section 4.1; no loss from -0.78 down."""
    if nu <= -0.78:
        return 0.0
    return 6.9 + 20 * math.log10(math.sqrt((nu - 0.1) ** 2 + 1) + nu - 0.1)


# -------------------------------------------------------------------------------------------------------------- spherical earth


def normalized_admittance(ground, radius, frequency, figures):
    loss = figures.ground_loss(ground.conductivity, frequency)
    horizontal = figures.admittance(radius, frequency) * ((ground.permittivity - 1) ** 2 + loss ** 2) ** -0.25
    return horizontal * (ground.permittivity ** 2 + loss ** 2) ** 0.5 if ground.vertical else horizontal


def ground_factor(k):
    """beta of the normalized admittance."""
    return (1 + 1.6 * k ** 2 + 0.67 * k ** 4) / (1 + 4.5 * k ** 2 + 1.53 * k ** 4)


def first_term(distance, h1, h2, radius, frequency, ground, figures=PRINTED):
    """-20 log E/E0 of the first term of the residue series, section 3.1.1.2."""
    k = normalized_admittance(ground, radius, frequency, figures)
    beta = ground_factor(k)
    x = beta * figures.length(radius, frequency) * distance
    if x < 1.6:
        field = -20 * math.log10(x) - 5.6488 * x ** 1.425
    else:
        field = 11 + 10 * math.log10(x) - 17.6 * x
    for height in (h1, h2):
        b = beta * (beta * figures.height(radius, frequency) * height)
        gain = -math.inf
        if b > 2:
            gain = 17.6 * math.sqrt(b - 1.1) - 5 * math.log10(b - 1.1) - 8
        elif b > 0:
            gain = 20 * math.log10(b + 0.1 * b ** 3)
        field += max(gain, 2 + 20 * math.log10(k))
    return -field


def spherical(distance, h1, h2, radius, frequency, ground, figures=PRINTED):
    """Section 3.2, step by step, lengths in metres."""
    d, a, wavelength = 1000 * distance, 1000 * radius, LIGHT / frequency
    horizon = math.sqrt(2 * a) * (math.sqrt(h1) + math.sqrt(h2))
    if d >= horizon:
        return max(first_term(distance, h1, h2, radius, frequency, ground, figures), 0.0)
    m = d * d / (4 * a * (h1 + h2))
    c = (h1 - h2) / (h1 + h2)
    inner = 3 * c / 2 * math.sqrt(3 * m / (m + 1) ** 3)
    b = 2 * math.sqrt((m + 1) / (3 * m)) * math.cos(math.pi / 3 + math.acos(min(max(inner, -1), 1)) / 3)
    d1 = d / 2 * (1 + b)
    d2 = d - d1
    clearance = ((h1 - d1 * d1 / (2 * a)) * d2 + (h2 - d2 * d2 / (2 * a)) * d1) / d
    needed = 0.552 * math.sqrt(max(d1 * d2 * wavelength / d, 0))
    if clearance > needed:
        return 0.0
    marginal_radius = 0.5 * (d / (math.sqrt(h1) + math.sqrt(h2))) ** 2
    marginal = first_term(distance, h1, h2, marginal_radius / 1000, frequency, ground, figures)
    if marginal < 0:
        return 0.0
    return (1 - (clearance / needed if needed > 0 else 0)) * marginal


# ------------------------------------------------------------------------------------------------------------------ whole paths


def bullington(d, h, tx, rx, radius, frequency):
    """Section 4.5, Bullington part; d, h: lists; tx, rx: antennas above sea level."""
    total, curvature, wavelength = d[-1], 1 / radius, LIGHT / frequency
    middle = range(1, len(d) - 1)
    edge = 0.0
    if middle:
        def raised(i):
            return h[i] + 500 * curvature * d[i] * (total - d[i])

        def scale(at):
            return math.sqrt(0.002 * total / (wavelength * at * (total - at)))

        direct = (rx - tx) / total
        from_tx = max((raised(i) - tx) / d[i] for i in middle)
        if from_tx < direct:
            edge = knife_edge(max((raised(i) - (tx * (total - d[i]) + rx * d[i]) / total) * scale(d[i]) for i in middle))
        else:
            from_rx = max((raised(i) - rx) / (total - d[i]) for i in middle)
            if from_tx + from_rx <= 0:  # one straight line of ground
                edge = knife_edge(0)
            else:
                at = (rx - tx + from_rx * total) / (from_tx + from_rx)
                edge = knife_edge((tx + from_tx * at - (tx * (total - at) + rx * at) / total) * scale(at))
    return edge + (1 - math.exp(-edge / 6)) * (10 + 0.02 * total)


def smooth_heights(d, h, tx, rx):
    """Heights of the smooth earth under both ends, attachment on effective antenna heights."""
    total = d[-1]
    steps = range(1, len(d))
    v1 = math.fsum((d[i] - d[i - 1]) * (h[i] + h[i - 1]) for i in steps)
    v2 = math.fsum((d[i] - d[i - 1]) * (h[i] * (2 * d[i] + d[i - 1]) + h[i - 1] * (d[i] + 2 * d[i - 1])) for i in steps)
    first, second = (2 * v1 * total - v2) / total ** 2, (v2 - v1 * total) / total ** 2
    above = [(d[i], h[i] - (tx * (total - d[i]) + rx * d[i]) / total) for i in range(1, len(d) - 1)]
    highest = max((height for _, height in above), default=0.0)
    if highest > 0:
        seen_tx = max(height / at for at, height in above)
        seen_rx = max(height / (total - at) for at, height in above)
        first -= highest * seen_tx / (seen_tx + seen_rx)
        second -= highest * seen_rx / (seen_tx + seen_rx)
    return min(first, h[0]), min(second, h[-1])


def diffraction(spacing, h, tx, rx, radius, frequency, ground, figures=PRINTED):
    """(total, Bullington part, spherical earth, Bullington part of the smooth earth); tx, rx above sea level."""
    d = [i * spacing for i in range(len(h))]
    actual = bullington(d, h, tx, rx, radius, frequency)
    first, second = smooth_heights(d, h, tx, rx)
    h1, h2 = max(tx - first, 0.0), max(rx - second, 0.0)
    smooth = bullington(d, [0.0] * len(h), h1, h2, radius, frequency)
    sphere = spherical(d[-1], h1, h2, radius, frequency, ground, figures)
    return actual + max(sphere - smooth, 0.0), actual, sphere, smooth


# ---------------------------------------------------------------------------------------------------------------------- clutter

# Category code: (representative height in metres, whether cover of buildings or trees).
CATEGORIES = {1: (10.0, False), 2: (10.0, False), 3: (10.0, True), 4: (15.0, True), 5: (20.0, True)}


def cover(category, given_height):
    """R, metres."""
    return given_height if given_height > 0 else CATEGORIES[category][0]


def terminal_loss(category, given_height, antenna, frequency, street=27.0):
    """A_h of P.2108 section 3.1 for one end, or NO_LOSS."""
    ghz = frequency / 1000
    if category == 0:
        return 0.0
    if not 0.03 <= ghz <= 3:
        return NO_LOSS
    height = cover(category, given_height)
    if antenna >= height:
        return 0.0
    if CATEGORIES[category][1]:
        below = height - antenna
        nu = 0.342 * math.sqrt(ghz) * math.sqrt(below * math.degrees(math.atan(below / street)))
        return max(knife_edge(nu) - 6.03, 0.0)
    return NO_LOSS if antenna <= 0 else -(21.8 + 6.2 * math.log10(ghz)) * math.log10(antenna / height)


def evaluate(path, figures=PRINTED):
    """(diffraction loss, its Bullington part, its spherical part, clutter loss) of one of paths.py."""
    h = path.heights
    tx_agl, rx_agl = path.tx - h[0], path.rx
    ends = [terminal_loss(path.category, path.cover, antenna, path.frequency) for antenna in (tx_agl, rx_agl)]
    clutter = NO_LOSS if NO_LOSS in ends else sum(ends)
    if path.category and 30 <= path.frequency <= 3000:
        top = cover(path.category, path.cover)
        tx_agl, rx_agl = max(tx_agl, top), max(rx_agl, top)
    total, actual, sphere, _ = diffraction(path.spacing, h, h[0] + tx_agl, h[-1] + rx_agl, path.radius, path.frequency, path.ground, figures)
    return total, actual, sphere, clutter
