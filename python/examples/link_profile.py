#!/usr/bin/python3
"""Two pictures of a link over the bundled terrain: its profile with the first Fresnel zone, and its loss over the distance.

    link_profile.py [FOLDER]

writes profile.png, profile.svg and loss.svg into the folder (the present one without) and prints what the pictures show.
Needs neither numpy nor a plotting package.
"""
import pathlib
import sys

import zelprofiler01 as zel

START = zel.Station(Lat=36.37, Lon=-84.10, AntHt=30)
END = zel.Station(Lat=36.19, Lon=-84.23, AntHt=30)
FREQUENCY = 450  # MHz
CONFIDENCES = (0.1, 0.5, 0.9)  # of comparable situations


def loss_over_distance():
    """Distances in km from the start, and for each the losses at the levels of confidence.

    A receiver as high as the end's stands on every sample in turn: one call of the radio model on that many paths.
    """
    heights = zel.sample(START.Lat, START.Lon, END.Lat, END.Lon, 600)
    spacing = heights.distance_km * 1000 / (len(heights) - 1)
    counts = range(40, len(heights) + 1, 4)  # the model is meant for 1 km and more
    grounds = [heights[:count] for count in counts]
    losses = zel.longley_rice(grounds, spacing, START.AntHt, END.AntHt, FREQUENCY, confidence=CONFIDENCES, errors="raise")
    return [(count - 1) * spacing / 1000 for count in counts], losses


def svg_chart(distances, losses, width=1000, height=500):
    """The losses as lines, with axes."""
    left, top, right, bottom = 70, 40, width - 150, height - 60
    lowest = 10 * (min(min(row) for row in losses) // 10)
    highest = 10 * (max(max(row) for row in losses) // 10 + 1)

    def x(distance):
        return left + (right - left) * distance / distances[-1]

    def y(decibels):  # more loss is further down
        return top + (bottom - top) * (decibels - lowest) / (highest - lowest)

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" viewBox="0 0 {width} {height}" '
             'font-family="sans-serif" font-size="14">', f'<rect width="{width}" height="{height}" fill="white"/>',
             f'<text x="{left}" y="24" font-size="16">Longley-Rice loss at {FREQUENCY} MHz, antennas of '
             f'{START.AntHt} and {END.AntHt} m, not exceeded in so much of comparable situations</text>']
    for decibels in range(int(lowest), int(highest) + 1, 10):
        parts.append(f'<path d="M{left} {y(decibels):.1f}H{right}" stroke="#ccc"/>'
                     f'<text x="{left - 8}" y="{y(decibels) + 5:.1f}" text-anchor="end">{decibels}</text>')
    for distance in range(0, int(distances[-1]) + 1, 5):
        parts.append(f'<path d="M{x(distance):.1f} {top}V{bottom}" stroke="#ccc"/>'
                     f'<text x="{x(distance):.1f}" y="{bottom + 20}" text-anchor="middle">{distance}</text>')
    parts.append(f'<text x="{(left + right) / 2}" y="{height - 15}" text-anchor="middle">km from the start</text>'
                 f'<text transform="translate(20 {(top + bottom) / 2}) rotate(-90)" text-anchor="middle">dB</text>')
    for level, (confidence, colour) in enumerate(zip(CONFIDENCES, ("#68c", "#000", "#c60"))):
        line = "L".join(f"{x(distance):.1f} {y(row[level]):.1f}" for distance, row in zip(distances, losses))
        parts.append(f'<path d="M{line}" fill="none" stroke="{colour}" stroke-width="1.5"/>'
                     f'<path d="M{right + 20} {top + 20 + 24 * level}h24" stroke="{colour}" stroke-width="3"/>'
                     f'<text x="{right + 52}" y="{top + 25 + 24 * level}">{confidence:.0%}</text>')
    return "\n".join([*parts, "</svg>", ""])


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    for name in ("profile.png", "profile.svg"):
        zel.plot(folder / name, *START, *END, frequency=FREQUENCY, fresnel_percent=100)
    distances, losses = loss_over_distance()
    (folder / "loss.svg").write_text(svg_chart(distances, losses))

    profile = zel.profile(*START, *END, frequency=FREQUENCY)
    print(f"{profile.distance_km:.1f} km at {profile.bearing_deg:.1f} degrees: {profile.verdict}")
    print(f"least clearance {profile.worst.clearance_m:.1f} m, {profile.worst.clearance_percent:.0f} % of the first Fresnel "
          f"zone, {profile.worst.distance_km:.1f} km from the start")
    print(f"modeled loss {zel.get_path_loss(*START, *END, FREQUENCY):.1f} dB, free space {profile.free_space_db:.1f} dB")


if __name__ == "__main__":
    main()
