#!/usr/bin/python3
"""Draws Tarn's seven editor images into a folder (default: resources/img of this tree).

  tools/artwork/tarn_artwork.py [FOLDER]

Every image is drawn from scratch with cairo: a dark anodised front panel lit from the top left,
a linear VU meter whose needle slides behind a glass window, amber lamps, and black knobs with
white pointers. The places come from the editor's layout, and the meter's scale from the needle
law of the effect, so each printed mark sits where the needle stands for that level. Text is
DejaVu Sans, named explicitly, with fixed font options, so the files come out the same byte for
byte wherever the same cairo and fonts are installed.
"""
import math
import os
import sys

import cairo

WIDTH, HEIGHT = 304, 416

# Where the editor places things (its layout, in pixels).
NEEDLE_X, NEEDLE_Y, NEEDLE_TRAVEL = 55, 42, 202
NEEDLE_W, NEEDLE_H = 6, 64
LEDS_X, LEDS_Y, LEDS_SPAN, LED_SIZE = 105, 16, 156, 18
TRIM_KNOBS = [(13, 47, "TRIM", 27), (252, 47, "XTALK", 280)]  # labels centred beside the bezel
TRIM_SIZE, TRIM_FRAMES = 38, 51
BIG_KNOBS = [(34, 118, "DRIVE", "0", "10"), (169, 118, "OUTPUT", "-20", "+20"),
             (34, 246, "ASYMMETRY", "0", "10"), (169, 246, "FREQ", "-10", "+10")]
BIG_SIZE, BIG_FRAMES = 100, 128
BYPASS_X, BYPASS_Y, BYPASS_W, BYPASS_H = 57, 41, 30, 14
KNOB_SWEEP = math.radians(135.0)  # either side of straight up

# The meter window: the bezel opening of the front panel, below the bypass switch.
GLASS = (56, 60, 254, 108)  # left, top, right, bottom
BEZEL = (52, 37, 257, 113)

# Colours: panel, print, lamp amber, meter face.
PANEL_TOP, PANEL_BOTTOM = (0.205, 0.215, 0.225), (0.135, 0.14, 0.15)
INK = (0.90, 0.87, 0.78)
AMBER = (1.0, 0.62, 0.12)
FACE = (0.95, 0.87, 0.64)
FACE_INK = (0.13, 0.11, 0.09)
RED_ZONE = (0.78, 0.12, 0.08)


def needle_value(raw):
    """What the effect sends for a raw meter value: compressed above 0.638, kept off the stops."""
    if raw > 0.638:
        raw = 0.638 + (raw - 0.638) * 0.43
    return min(0.98, raw) if raw >= 0.015 else 0.015


def needle_centre(value):
    """The x of the needle's line: the handle moves trunc((202 - W) * value) from x 55."""
    return NEEDLE_X + int((NEEDLE_TRAVEL - NEEDLE_W) * value) + NEEDLE_W / 2.0


def mark_x(vu):
    """0 VU is a raw meter value of 1.0 (-18 dB full scale on the input and output modes)."""
    return needle_centre(needle_value(10.0 ** (vu / 20.0)))


def surface(w, h):
    s = cairo.ImageSurface(cairo.FORMAT_ARGB32, w, h)
    ctx = cairo.Context(s)
    options = cairo.FontOptions()
    options.set_antialias(cairo.ANTIALIAS_GRAY)
    options.set_hint_style(cairo.HINT_STYLE_NONE)
    options.set_hint_metrics(cairo.HINT_METRICS_OFF)
    ctx.set_font_options(options)
    return s, ctx


def text(ctx, s, x, y, size, colour=INK, bold=True, align=0.5):
    """s with its baseline at y, its left edge, centre or right edge (align 0, 0.5, 1) at x."""
    weight = cairo.FONT_WEIGHT_BOLD if bold else cairo.FONT_WEIGHT_NORMAL
    ctx.select_font_face("DejaVu Sans", cairo.FONT_SLANT_NORMAL, weight)
    ctx.set_font_size(size)
    extents = ctx.text_extents(s)
    ctx.move_to(round(x - align * extents.x_advance), y)
    ctx.set_source_rgb(*colour)
    ctx.show_text(s)


def rounded_rect(ctx, l, t, r, b, radius):
    ctx.new_sub_path()
    ctx.arc(r - radius, t + radius, radius, -math.pi / 2, 0)
    ctx.arc(r - radius, b - radius, radius, 0, math.pi / 2)
    ctx.arc(l + radius, b - radius, radius, math.pi / 2, math.pi)
    ctx.arc(l + radius, t + radius, radius, math.pi, 3 * math.pi / 2)
    ctx.close_path()


def lit_from_top_left(ctx, cx, cy, radius, light, dark):
    """A linear gradient across a round part: light at the top left, dark at the bottom right."""
    g = cairo.LinearGradient(cx - radius, cy - radius, cx + radius, cy + radius)
    g.add_color_stop_rgb(0, *light)
    g.add_color_stop_rgb(1, *dark)
    return g


def screw(ctx, cx, cy):
    ctx.arc(cx, cy, 4.5, 0, 2 * math.pi)
    ctx.set_source(lit_from_top_left(ctx, cx, cy, 4.5, (0.62, 0.63, 0.64), (0.22, 0.23, 0.24)))
    ctx.fill()
    ctx.set_source_rgb(0.1, 0.1, 0.1)
    ctx.set_line_width(1.2)
    ctx.move_to(cx - 3.2, cy + 1.3)
    ctx.line_to(cx + 3.2, cy - 1.3)
    ctx.stroke()


def meter_face():
    """VUBG1: the meter face behind the glass (the rest of it lies under the front panel)."""
    s, ctx = surface(WIDTH, HEIGHT)
    ctx.set_source_rgb(0.05, 0.05, 0.05)
    ctx.paint()
    l, t, r, b = GLASS
    g = cairo.LinearGradient(0, t, 0, b)
    g.add_color_stop_rgb(0, *FACE)
    g.add_color_stop_rgb(1, 0.86, 0.76, 0.52)
    ctx.rectangle(l, t, r - l, b - t)
    ctx.set_source(g)
    ctx.fill()
    scale_y = t + 24
    ctx.set_line_width(1.0)
    ctx.set_source_rgb(*FACE_INK)
    ctx.move_to(mark_x(-20), scale_y + 0.5)
    ctx.line_to(mark_x(0), scale_y + 0.5)
    ctx.stroke()
    ctx.set_source_rgb(*RED_ZONE)
    ctx.rectangle(mark_x(0), scale_y - 1, mark_x(3) + 2 - mark_x(0), 3)
    ctx.fill()
    for vu in (-20, -10, -7, -5, -3, -1, 0, 1, 2, 3):
        x = round(mark_x(vu)) + 0.5
        colour = RED_ZONE if vu > 0 else FACE_INK
        ctx.set_source_rgb(*colour)
        ctx.set_line_width(1.0)
        ctx.move_to(x, scale_y - 7)
        ctx.line_to(x, scale_y + 1)
        ctx.stroke()
        text(ctx, str(abs(vu)), x, scale_y - 10, 8, colour, bold=False)  # signs at the ends
    for vu in (-15, -9, -8, -6, -4, -2):  # minor ticks
        x = round(mark_x(vu)) + 0.5
        ctx.set_source_rgb(*FACE_INK)
        ctx.move_to(x, scale_y - 4)
        ctx.line_to(x, scale_y + 1)
        ctx.stroke()
    text(ctx, "VU", (l + r) / 2.0, b - 8, 12, FACE_INK)
    text(ctx, "-", l + 10, b - 8, 11, FACE_INK)
    text(ctx, "+", r - 10, b - 8, 11, RED_ZONE)
    return s


def panel():
    """BG1: the front panel, with a transparent window where the meter glass is."""
    s, ctx = surface(WIDTH, HEIGHT)
    g = cairo.LinearGradient(0, 0, WIDTH, HEIGHT)
    g.add_color_stop_rgb(0, *PANEL_TOP)
    g.add_color_stop_rgb(1, *PANEL_BOTTOM)
    ctx.set_source(g)
    ctx.paint()
    for i in range(0, WIDTH, 2):  # a faint brushed grain
        ctx.set_source_rgba(1, 1, 1, 0.012 if (i * 7) % 5 < 2 else 0.0)
        ctx.rectangle(i, 0, 1, HEIGHT)
        ctx.fill()
    ctx.set_source_rgba(1, 1, 1, 0.10)  # the panel's lit top and left edges
    ctx.rectangle(0, 0, WIDTH, 1)
    ctx.rectangle(0, 0, 1, HEIGHT)
    ctx.fill()
    ctx.set_source_rgba(0, 0, 0, 0.45)
    ctx.rectangle(0, HEIGHT - 1, WIDTH, 1)
    ctx.rectangle(WIDTH - 1, 0, 1, HEIGHT)
    ctx.fill()
    for x, y in ((8, 8), (WIDTH - 8, 8), (8, HEIGHT - 8), (WIDTH - 8, HEIGHT - 8)):
        screw(ctx, x, y)

    # The bezel: a recessed dark frame, its lower right edge catching the light.
    rounded_rect(ctx, *BEZEL, 5)
    ctx.set_source_rgb(0.07, 0.07, 0.075)
    ctx.fill()
    l, t, r, b = BEZEL
    ctx.set_line_width(1.0)
    ctx.set_source_rgba(1, 1, 1, 0.16)
    ctx.move_to(l + 3, b - 0.5)
    ctx.line_to(r - 0.5, b - 0.5)
    ctx.line_to(r - 0.5, t + 3)
    ctx.stroke()
    text(ctx, "BYPASS", BYPASS_X + BYPASS_W + 5, BYPASS_Y + 11, 8, INK, align=0)
    text(ctx, "TARN VU", r - 6, BYPASS_Y + 11, 8, (0.55, 0.53, 0.48), align=1)
    # The glass: clear, with a faint reflection across its top.
    gl, gt, gr, gb = GLASS
    ctx.set_operator(cairo.OPERATOR_CLEAR)
    ctx.rectangle(gl, gt, gr - gl, gb - gt)
    ctx.fill()
    ctx.set_operator(cairo.OPERATOR_OVER)
    shine = cairo.LinearGradient(0, gt, 0, gt + 18)
    shine.add_color_stop_rgba(0, 1, 1, 1, 0.22)
    shine.add_color_stop_rgba(1, 1, 1, 1, 0.0)
    ctx.rectangle(gl, gt, gr - gl, 18)
    ctx.set_source(shine)
    ctx.fill()
    ctx.set_source_rgba(0, 0, 0, 0.35)  # the bezel's shadow on the glass, light from top left
    ctx.rectangle(gl, gt, gr - gl, 2)
    ctx.rectangle(gl, gt, 2, gb - gt)
    ctx.fill()

    # Product name and the meter-mode lamps' labels.
    text(ctx, "TARN", 16, 31, 17, INK, align=0)
    gap = (LEDS_SPAN - 3 * LED_SIZE) // 2
    for i, label in enumerate(("IN", "DIFF", "OUT")):
        text(ctx, label, LEDS_X + i * (LED_SIZE + gap) + LED_SIZE + 4, LEDS_Y + 13, 8, INK, align=0)

    for x, y, label, label_x in TRIM_KNOBS:
        cx, cy = x + TRIM_SIZE / 2.0, y + TRIM_SIZE / 2.0
        knob_ticks(ctx, cx, cy, 14.5, 17.5, 7)
        text(ctx, label, label_x, y + TRIM_SIZE + 12, 8)
    for x, y, label, low, high in BIG_KNOBS:
        cx, cy = x + BIG_SIZE / 2.0, y + BIG_SIZE / 2.0
        knob_ticks(ctx, cx, cy, 40, 45, 11)
        text(ctx, label, cx, y + BIG_SIZE + 11, 10)
        for value, angle in ((low, -KNOB_SWEEP), (high, KNOB_SWEEP)):
            tx, ty = cx + 40 * math.sin(angle), cy - 40 * math.cos(angle)
            text(ctx, value, tx + (-6 if angle < 0 else 6), ty + 12, 8, bold=False)
    text(ctx, "ANALOGUE  SATURATION", WIDTH / 2.0, HEIGHT - 20, 9, (0.62, 0.6, 0.54))
    return s


def knob_ticks(ctx, cx, cy, inner, outer, count):
    ctx.set_source_rgb(*INK)
    ctx.set_line_width(1.2)
    for i in range(count):
        angle = -KNOB_SWEEP + 2 * KNOB_SWEEP * i / (count - 1)
        sx, sy = math.sin(angle), -math.cos(angle)
        ctx.move_to(cx + inner * sx, cy + inner * sy)
        ctx.line_to(cx + outer * sx, cy + outer * sy)
        ctx.stroke()


def knob(ctx, cx, cy, radius, angle):
    """A black knob with a knurled skirt, a brushed cap and a white pointer at angle."""
    ctx.arc(cx + 1.5, cy + 2, radius, 0, 2 * math.pi)  # its shadow, to the lower right
    ctx.set_source_rgba(0, 0, 0, 0.45)
    ctx.fill()
    ctx.arc(cx, cy, radius, 0, 2 * math.pi)
    ctx.set_source(lit_from_top_left(ctx, cx, cy, radius, (0.30, 0.30, 0.31), (0.04, 0.04, 0.05)))
    ctx.fill()
    teeth = max(18, int(radius * 1.2))
    ctx.set_line_width(1.0)
    for i in range(teeth):  # the grip turns with the knob
        a = angle + 2 * math.pi * i / teeth
        ctx.move_to(cx + (radius - 3) * math.sin(a), cy - (radius - 3) * math.cos(a))
        ctx.line_to(cx + (radius - 0.5) * math.sin(a), cy - (radius - 0.5) * math.cos(a))
        ctx.set_source_rgba(0, 0, 0, 0.6)
        ctx.stroke()
    cap = radius * 0.72
    ctx.arc(cx, cy, cap, 0, 2 * math.pi)
    ctx.set_source(lit_from_top_left(ctx, cx, cy, cap, (0.42, 0.42, 0.43), (0.12, 0.12, 0.13)))
    ctx.fill()
    ctx.arc(cx, cy, cap, 0, 2 * math.pi)
    ctx.set_source_rgba(1, 1, 1, 0.12)
    ctx.set_line_width(1.0)
    ctx.stroke()
    sx, sy = math.sin(angle), -math.cos(angle)
    ctx.set_line_cap(cairo.LINE_CAP_ROUND)
    ctx.set_line_width(max(2.0, radius / 10.0))
    ctx.set_source_rgb(0.97, 0.96, 0.92)
    ctx.move_to(cx + radius * 0.18 * sx, cy + radius * 0.18 * sy)
    ctx.line_to(cx + (radius - 2) * sx, cy + (radius - 2) * sy)
    ctx.stroke()
    ctx.set_line_cap(cairo.LINE_CAP_BUTT)


def knob_strip(size, frames, radius):
    """frames frames of size × size stacked downwards, turning from -135 to +135 degrees."""
    s, ctx = surface(size, size * frames)
    for k in range(frames):
        angle = -KNOB_SWEEP + 2 * KNOB_SWEEP * k / (frames - 1)
        knob(ctx, size / 2.0, size * k + size / 2.0, radius, angle)
    return s


def lamp(ctx, cx, cy, radius, lit):
    """A domed lamp in a dark ring: dim amber when off, glowing when lit."""
    ctx.arc(cx, cy, radius, 0, 2 * math.pi)
    ctx.set_source_rgb(0.05, 0.05, 0.05)
    ctx.fill()
    core = AMBER if lit else (0.30, 0.17, 0.04)
    g = cairo.RadialGradient(cx - radius * 0.3, cy - radius * 0.35, 0.5, cx, cy, radius - 2)
    g.add_color_stop_rgb(0, *([1.0, 0.93, 0.7] if lit else [0.48, 0.3, 0.12]))
    g.add_color_stop_rgb(1, *core)
    ctx.arc(cx, cy, radius - 2, 0, 2 * math.pi)
    ctx.set_source(g)
    ctx.fill()


def leds():
    s, ctx = surface(LED_SIZE, 2 * LED_SIZE)
    for frame, lit in enumerate((False, True)):
        if lit:  # a glow around the lit dome
            g = cairo.RadialGradient(9, 27, 3, 9, 27, 9)
            g.add_color_stop_rgba(0, *AMBER, 0.6)
            g.add_color_stop_rgba(1, *AMBER, 0.0)
            ctx.rectangle(0, LED_SIZE, LED_SIZE, LED_SIZE)
            ctx.set_source(g)
            ctx.fill()
        lamp(ctx, 9, frame * LED_SIZE + 9, 7, lit)
    return s


def needle():
    """Needle1: a dark line with a red tip, its shadow to the right, transparent around it."""
    s, ctx = surface(NEEDLE_W, NEEDLE_H)
    ctx.set_source_rgba(0, 0, 0, 0.25)
    ctx.rectangle(3.5, 16, 1.5, NEEDLE_H - 16)
    ctx.fill()
    ctx.set_source_rgb(0.1, 0.09, 0.08)
    ctx.rectangle(2.25, 16, 1.5, NEEDLE_H - 16)
    ctx.fill()
    ctx.set_source_rgb(*RED_ZONE)
    ctx.rectangle(2.25, 16, 1.5, 14)
    ctx.fill()
    return s


def bypass():
    """Bypass: a small rocker, off (lamp dark) and on (lamp lit red)."""
    s, ctx = surface(BYPASS_W, 2 * BYPASS_H)
    for frame, on in enumerate((False, True)):
        y = frame * BYPASS_H
        rounded_rect(ctx, 0.5, y + 0.5, BYPASS_W - 0.5, y + BYPASS_H - 0.5, 3)
        ctx.set_source_rgb(0.02, 0.02, 0.02)
        ctx.fill()
        rounded_rect(ctx, 2, y + 2, BYPASS_W - 2, y + BYPASS_H - 2, 2)
        ctx.set_source(lit_from_top_left(ctx, BYPASS_W / 2.0, y + BYPASS_H / 2.0, 12,
                                         (0.36, 0.36, 0.37), (0.12, 0.12, 0.13)))
        ctx.fill()
        g = cairo.RadialGradient(8, y + 7, 0.5, 8, y + 7, 4)
        g.add_color_stop_rgb(0, *((1.0, 0.55, 0.45) if on else (0.35, 0.1, 0.08)))
        g.add_color_stop_rgb(1, *((0.85, 0.1, 0.05) if on else (0.18, 0.05, 0.04)))
        ctx.arc(8, y + 7, 3.5, 0, 2 * math.pi)
        ctx.set_source(g)
        ctx.fill()
        ctx.set_source_rgba(1, 1, 1, 0.5 if on else 0.25)
        ctx.set_line_width(1.0)
        ctx.move_to(16.5, y + 4)
        ctx.line_to(16.5, y + BYPASS_H - 4)
        ctx.move_to(20.5, y + 4)
        ctx.line_to(20.5, y + BYPASS_H - 4)
        ctx.move_to(24.5, y + 4)
        ctx.line_to(24.5, y + BYPASS_H - 4)
        ctx.stroke()
    return s


IMAGES = {
    "VUBG1.png": meter_face,
    "BG1.png": panel,
    "LED.png": leds,
    "KnobS1.png": lambda: knob_strip(BIG_SIZE, BIG_FRAMES, 34),
    "InGain1.png": lambda: knob_strip(TRIM_SIZE, TRIM_FRAMES, 12),
    "Needle1.png": needle,
    "Bypass.png": bypass,
}


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "..", "..", "resources", "img")
    folder = os.path.normpath(folder)
    os.makedirs(folder, exist_ok=True)
    for name, draw in IMAGES.items():
        draw().write_to_png(os.path.join(folder, name))
        print(os.path.join(folder, name))


if __name__ == "__main__":
    main()
