#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Recomputes every call of the end-to-end records (tests/data/e2e/records/*.txt)
from the formulas, apart from the library, and compares them value for value.

A record names its caller's inputs (ICC table, brightness scale, calibration
file choice, panel index, reading levels, the VX tone curve) and the 512-byte
block it was made with. From those this model reads the block as the library
would (magic and CRCs, the factory gamma LUT of version 6 and later from its
LUT string, the factory gamma table of version 5 from its tone measurements,
or no factory data at all), solves the gains of the initialisation request
with and without the fixed target of flag 0x80, builds requests 2 to 7 with
and without the re-gamma flag 0x80 and the gain recomputation 0x40, the
native request 8 and the VX modes, improves each LUT (dark-end smoothing, or
step interpolation for version 7), applies the brightness scale and converts
it for every lut api type 0 to 6. Each call's status, factory fields, gains,
16-bit table, IGCL doubles and NVIDIA floats (by value, or by the digest of
their bytes) are compared with the record, and so is every table that the
call's trace log dumps: the mode's LUT, the improved and brightness-controlled
LUTs, the base and factory gamma LUTs and the result, and the matrices, gains,
factory fields and settings its record dump shows. The call's messages
(tests/data/e2e/messages.txt with the record's numbers) must tell the
smoothing searches, the fetched interpolation step, the brightness settings,
the reading mix's largest gain and the initialisation result that the model
went through.

Usage: reference_pipeline.py RECORD...   (exit status 1 on any difference)
       reference_pipeline.py --shapes MESSAGES RECORD...   (the shared message
       and trace shapes against the shapes the records name)
"""
import array
import copy
import functools
import math
import os
import re
import struct
import sys

READ_A, READ_B = (0.316103222, 0.343348174), (0.3779, 0.3923)
OLD_DEFAULT_WHITE = 0.304670011
LUM_DIFF = 220 ** 0.4 - 190 ** 0.4


def half_up(v):
    return math.trunc(v + 0.5)


def f32(v):
    return struct.unpack('<f', struct.pack('<f', v))[0]


# ---- colour primitives ------------------------------------------------------

def xy_of(row):
    s = sum(row)
    return (0.0, 0.0) if s == 0 else (row[0] / s, row[1] / s)


def mccamy(p):
    n = (p[0] - 0.332) / (0.1858 - p[1])
    t = half_up(437 * n ** 3 + 3601 * n ** 2 + 6831 * n + 5517)
    return min(max(t, 2222), 13000)


def daylight(t):
    t = min(max(t, 4000), 25000)
    if t <= 7000:
        x = 2.9678 * 10.0 ** 6 / t ** 2 - 4.607 * 10.0 ** 9 / t ** 3 + 0.09911 * 10.0 ** 3 / t + 0.244063
    else:
        x = 1.9018 * 10.0 ** 6 / t ** 2 - 2.0064 * 10.0 ** 9 / t ** 3 + 0.24748 * 10.0 ** 3 / t + 0.23704
    return x, 2.87 * x - 3 * x * x - 0.275


def planckian(t):
    t = min(max(t, 1667), 25000)
    td = float(min(max(t, 4000), 25000))  # the warm end is flattened to 4000 K for x
    if t <= 4000:
        x = -0.2661239e9 / td ** 3 - 0.234358e6 / td ** 2 + 0.8776956e3 / td + 0.17991
    else:
        x = -3.0258469e9 / td ** 3 + 2.1070379e6 / td ** 2 + 0.2226347e3 / td + 0.24039
    if t <= 2222:
        y = -1.1063814 * x ** 3 - 1.3481102 * x ** 2 + 2.18555832 * x - 0.20219683
    elif t <= 4000:
        y = -0.9549476 * x ** 3 - 1.37418593 * x ** 2 + 2.09137015 * x - 0.16748867
    else:
        y = 3.081758 * x ** 3 - 5.8733867 * x ** 2 + 3.75112997 * x - 0.37001483
    return x, y


def offset_daylight(t):
    t = min(max(t, 4000), 25000)

    def uv(p):
        d = -2 * p[0] + 12 * p[1] + 3
        return 4 * p[0] / d, 6 * p[1] / d
    pu, du = uv(planckian(t)), uv(daylight(t))
    d = (du[0] - pu[0], du[1] - pu[1])
    length = math.hypot(*d)
    u, v = du[0] + 0.003 * d[0] / length, du[1] + 0.003 * d[1] / length
    den = 2 * u - 8 * v + 4
    return 3 * u / den, 2 * v / den


def inside(p, r, g, b):
    c1 = (g[1] - p[1]) * (r[0] - p[0]) - (g[0] - p[0]) * (r[1] - p[1])
    c2 = (b[1] - p[1]) * (g[0] - p[0]) - (b[0] - p[0]) * (g[1] - p[1])
    c3 = (b[0] - p[0]) * (r[1] - p[1]) - (b[1] - p[1]) * (r[0] - p[0])
    return (c1 > 0 and c2 > 0 and c3 > 0) or (c1 < 0 and c2 < 0 and c3 < 0)


# ---- the gain solver --------------------------------------------------------

class Solver:
    """One white-point solve on the offset daylight locus, gamma 2.2."""

    def __init__(self, rows):
        self.rows = rows
        self.prim = [xy_of(r) for r in rows]
        self.Y = [r[1] for r in rows]

    def white_gains(self, w):
        (xr, yr), (xg, yg), (xb, yb) = self.prim[:3]
        a, b, c = (w[0] - xb) / yb, (w[0] - xg) / yg, (w[1] - yg) / yg
        d, e, f = (w[1] - yb) / yb, (w[0] - xr) / yr, (w[1] - yr) / yr
        wts = [d * b - a * c, f * a - e * d, e * c - f * b]
        s = sum(wts)
        share = [x / s for x in wts]
        k = [self.Y[i] / share[i] for i in range(3)]
        limit = 0
        if k[0] > k[1]:
            limit = 1
        if k[2] < k[limit]:
            limit = 2
        lum = [k[limit] * share[i] for i in range(3)]
        gains = [(lum[i] / self.Y[i]) ** (1 / 2.2) for i in range(3)]
        gains[limit] = 1.0
        return gains, sum(lum)

    def solve(self, target=None, cct=None, lum_floor=None):
        """Returns (gains, final target, its CCT); lum_floor(nativeY) gives the luminance floor."""
        white, native_y = self.prim[3], self.Y[3]
        fallback = ([1.0, 1.0, 1.0], white, mccamy(white))
        if not inside(white, *self.prim[:3]):
            return fallback
        native_cct = mccamy(white)
        if target is None:
            target = offset_daylight(cct)
        cct = mccamy(target)
        steps = 0
        while not inside(target, *self.prim[:3]):  # walk along the locus towards the native CCT
            if steps == 100:
                return fallback
            if cct > native_cct:
                cct -= 50
                overshot = cct < native_cct
            else:
                cct += 50
                overshot = cct > native_cct
            if overshot:
                return fallback
            target, steps = offset_daylight(cct), steps + 1
        gains, result_y = self.white_gains(target)
        floor = max(lum_floor(native_y) if lum_floor else 0.0, 0.0)
        if floor >= native_y:
            return fallback
        if floor != 0 and floor > result_y and result_y > 1.0:
            target = self.luminance_search(white, target, floor, result_y)
            if target is None or math.dist(target, white) < 0.0005:
                return fallback
            gains, result_y = self.white_gains(target)
        return gains, target, mccamy(target)

    def luminance_search(self, n_end, t_end, floor, result_y):
        mid = n_end if math.dist(n_end, t_end) < 0.0005 else None
        iterations = 0
        while abs(result_y - floor) > 1.0 or floor > result_y:
            iterations += 1
            if iterations == 1000:
                return None
            mid = ((n_end[0] + t_end[0]) / 2, (n_end[1] + t_end[1]) / 2)
            result_y = self.white_gains(mid)[1]
            if result_y == floor:
                break
            if floor > result_y:
                t_end = mid
            else:
                n_end = mid
            if math.dist(n_end, t_end) < 0.0005:
                return n_end
        return mid


def reading_targets(p, a=READ_A, b=READ_B):
    d = (b[0] - a[0], b[1] - a[1])
    length = math.hypot(*d)
    if a[0] - 0.005 > p[0]:
        return a, b
    r = (p[0] - a[0], p[1] - a[1])
    dot = r[0] * d[0] + r[1] * d[1]
    if dot >= 0:
        q = (d[0] * dot / length ** 2, d[1] * dot / length ** 2)
    elif math.hypot(*r) >= 0.005:
        return a, b
    else:
        q = (0.0, 0.0)
    u = (d[0] / length, d[1] / length)
    weak = (a[0] + q[0] + 0.005 * u[0], a[1] + q[1] + 0.005 * u[1])
    return weak, (weak[0] + length * u[0], weak[1] + length * u[1])


def check_gain(gain, base, threshold=0.4):
    thr = half_up(threshold * 255)
    for c in range(3):
        if gain[c] >= 1.0:
            continue
        k = half_up(gain[c] * 255)
        while half_up(base[c][k] / 256) < thr:
            k += 1
            if k >= 255:
                gain[c] = 1.0
                break
            gain[c] = k / 255
    return gain




# ---- the factory gamma table of version 5 data ------------------------------

LEVELS = (0, 42, 86, 128, 168, 210, 255)
SEGMENT_POWERS = {0: 2.2, 2: 1.17, 3: 1.12, 4: 1.09, 5: 1.08}  # segment 1 follows a quadratic instead


def tone_points(block):
    """Seven XYZ measurements per primary: black, the five grey levels, full drive."""
    rows = primaries(block)
    black = list(struct.unpack_from('<3f', block, 285))
    tone = struct.unpack_from('<45f', block, 103)
    return [[black] + [list(tone[p * 15 + 3 * k:p * 15 + 3 * k + 3]) for k in range(5)] + [rows[p]]
            for p in range(3)]


def fit_exponent(points, c):
    best, exponent = 9999.0, 0.0
    for k in range(1000):
        g = k / 100
        err = sum(abs((LEVELS[j] / LEVELS[6]) ** g - points[j][c] / points[6][c]) ** 2 for j in range(7))
        if err < best:
            best, exponent = err, g
    return exponent


def response_curve(points):
    curve = [[-1.0] * 3 for _ in range(256)]
    for k in range(6):
        lo, hi = LEVELS[k], LEVELS[k + 1]
        for i in range(lo + (k == 1), hi + (k != 1)):
            if k == 1:
                t = half_up((i - lo) * 255 / (hi - lo))
                f = 6e-06 * t ** 2 + 0.002305 * t + 0.000799
            else:
                f = (half_up((i - lo) * 255 / (hi - lo)) / 255) ** SEGMENT_POWERS[k]
            curve[i] = [points[k][c] + f * (points[k + 1][c] - points[k][c]) for c in range(3)]
    return curve


def inverse(curve, c, exponent, i):
    top = curve[255][c]
    s = i / 255
    aim = (s / 12.92 if s < 0.04045 else ((s + 0.055) / 1.055) ** 2.4) * top
    k = half_up((aim / top) ** (1 / exponent if exponent else math.inf) * 255)  # as 1 / 0.0 is in C
    step = -1 if curve[k][c] - aim > 0 else 1 if curve[k][c] - aim < 0 else 0
    while step and 0 <= k + step <= 255 and abs(curve[k + step][c] - aim) < abs(curve[k][c] - aim):
        k += step
    return max(k, 0)


@functools.lru_cache
def factory_gamma(block):
    """The gamma LUT of version 5 data: per channel, the drive code whose measured response meets sRGB."""
    lut = []
    for points in tone_points(block):
        exponents = [fit_exponent(points, c) for c in range(3)]
        curve = response_curve(points)
        weights = [v / sum(curve[255]) for v in curve[255]]
        table = [half_up(sum(weights[c] * inverse(curve, c, exponents[c], i) for c in range(3)))
                 for i in range(256)]
        k = next((k for k, v in enumerate(table) if v > 30), 0)
        if k > 0:
            top = table[k]
            table[:k + 1] = [half_up(j / k * top) for j in range(k + 1)]
        lut.append([v * 256 for v in table])
    return lut
# ---- LUT steps --------------------------------------------------------------

def apply_gains(gain, base):
    return [[base[c][half_up(i * gain[c]) % 65536] for i in range(256)] for c in range(3)]


def blend(t, a, b, base):
    t = min(max(t, 0.0), 1.0)
    gain = a if t == 0 else b if t == 1 else [(1 - t) * a[c] + t * b[c] for c in range(3)]
    return apply_gains(gain, base)


def vivid_level(i):
    return i if i < 50 else 0.00309841269841269 * i * i - 1.01587301587301e-5 * i ** 3 + 0.87047619047619 * i


def vivid(gain, base):
    return [[base[c][math.trunc(min(max(vivid_level(i) * gain[c], 0.0), 255.0) + 0.5)] for i in range(256)]
            for c in range(3)]


def compose(curve, lut):
    """Each level of `lut` re-read at the level that `curve` names for it."""
    return [[lut[c][min(max(math.trunc(curve[c][i] / 65280.0 * 255.0 + 0.5), 0), 255)] for i in range(256)]
            for c in range(3)]


@functools.cache
def regamma_curve():
    """The 2.6-over-2.2 curve of flag 0x80, in single precision."""
    plane = [math.trunc(f32(f32(math.pow(f32(i / 255.0), f32(1.1818181))) * 65280.0)) for i in range(256)]
    return [plane] * 3


def smooth(lut, searches):
    """Dark-end smoothing of the 8-bit LUT; None when a channel offers no smoothing point. Each channel's
    search result (channel, level, scatter, difference, kind) is added to `searches`."""
    lut8 = [[v >> 8 for v in plane] for plane in lut]
    out = [plane[:] for plane in lut8]
    for c in range(3):
        level, scatter, diff, kind = 64, 0, 0, 0
        while level >= 1:
            d = lut8[c][level] - level
            diff, kind = abs(d), 0 if d == 0 else 1 if d > 0 else 2
            if diff <= 12:
                scatter = 0 if diff == 0 else 20 if diff <= 8 else 30
                break
            level -= 1
        searches.append((c, level, scatter, diff, kind))
        if scatter == 0:
            return None
        if level < 30:
            continue
        for j in range(scatter + 1):
            ratio = (diff + scatter) / scatter if kind == 1 else (scatter - diff) / scatter
            v = math.ceil(ratio * j) if kind == 1 else math.floor(ratio * j)
            out[c][j] = int(min(max(v, 0), 255))
        for k in range(scatter + 1, level + 1):
            out[c][k] = out[c][k - 1] + 1
    return [[v * 256 for v in plane] for plane in out]


HUFFMAN_CODES = {'01': 0, '1': 1, '001': 2, '0001': 3, '0000': 4}  # the fixed five-symbol code


def lut_from_string(text, method):
    """The factory gamma LUT of a version 6+ block; None when the string does not decode."""
    diffs = [[1] * 256 for _ in range(3)]
    if method == 1:
        body, group, at = text[1:text[0]], 0, 0
        while at < len(body):
            counts, at = body[at:at + 3], at + 3
            for c in range(3):
                for pos in body[at:at + counts[c]]:
                    diffs[c][pos] = 0 if group == 0 else group + 1
                at += counts[c]
            group += 1
    elif method == 0:
        if text[1] >> 4 != 1:
            return None
        bits = ''.join(str(byte >> k & 1) for byte in text[2:text[0]] for k in range(8))
        if 1 <= (text[1] & 15) <= 7:
            bits = bits[:len(bits) - (8 - (text[1] & 15))]
        symbols, code = [], ''
        for bit in bits:
            code += bit
            if code in HUFFMAN_CODES:
                symbols.append(HUFFMAN_CODES[code])
                code = ''
        if len(symbols) > 768 or any(symbols[c * 256] != 0 for c in range(3) if c * 256 < len(symbols)):
            return None
        for i, sym in enumerate(symbols):
            diffs[i // 256][i % 256] = sym
    else:
        return None
    lut = []
    for c in range(3):
        diffs[c][0], v, plane = 0, 0, []
        for d in diffs[c]:
            v += d
            plane.append(v * 256)
        if plane[255] != 65280:
            return None
        lut.append(plane)
    return lut


def interpolate(lut, step):
    """Piecewise-linear 8-bit LUT through every step-th entry."""
    src = [[v >> 8 for v in plane] for plane in lut]
    out = [plane[:] for plane in src]
    step = step if 1 <= step <= 64 else 16
    for c in range(3):
        for s in range(0, 255, step):
            e = min(s + step, 255)
            for x in range(s + 1, e):
                out[c][x] = math.trunc((src[c][e] - src[c][s]) / (e - s) * (x - s) + src[c][s] + 0.5)
        if step != 16:
            for k in range(1, 16):
                out[c][k] = math.trunc(k * ((src[c][16] - src[c][0]) * 0.0625) + src[c][0] + 0.5)
    return [[v * 256 for v in plane] for plane in out]


def bright(lut, api_type, scale):
    th = 0.8 if api_type == 3 else 0.1
    for i in range(half_up(th * 255.0), 256):
        if f32(lut[1][i] / 65280.0) > 0.2:
            th = i / 255.0
            break
    k = (min(max(scale, 0.0), 1.0) - 0.4) * (1.0 - th) / 0.6 + th
    out = [[lut[c][max(math.trunc(i * k + 0.5), 0)] for i in range(256)] for c in range(3)]
    peak = min(out[2][255], out[1][255], out[0][255], 65535.0) / 65280.0
    if api_type == 3 and 0.55 > peak:
        f = 0.55 / peak if peak else math.inf
        out = [[0 if v == 0 else math.trunc(min(v * f, 65280.0)) for v in plane] for plane in out]
    return out


def srgb_encode(x):
    return x * 12.92 if x <= 0.0031308 else 1.055 * x ** (1 / 2.4) - 0.055


def srgb_resample(lut):
    """Entry i of the LUT re-read at the sRGB encoding of i / 255, linearly between neighbours."""
    out = [[0.0] * 256 for _ in range(3)]
    for i in range(256):
        x = i / 255.0
        p = srgb_encode(x) * 255.0
        lo, hi = max(0, math.floor(p)), min(255, math.ceil(p))
        for c in range(3):
            w = lut[c]
            out[c][i] = w[lo] + (w[hi] - w[lo]) / (hi - lo) * (p - lo) if hi != lo else w[hi]
    return out


def nvidia(lut):
    """Pre-gamma (sRGB decoding ramp) and post-gamma (encoded LUT at 1024 points), interleaved."""
    enc = [[v / 65280.0 for v in plane] for plane in srgb_resample(lut)]
    pre, post = [], []
    for j in range(1024):
        x = f32(j / 1023)
        pre += [f32(x / 12.92 if x <= 0.04045 else ((x + 0.055) / 1.055) ** 2.4)] * 3
        q = f32(j * 255.0 / 1023.0)
        lo, hi = math.floor(q), math.ceil(q)
        f = f32((q - lo) / ((hi - lo) or 1.0))
        post += [f32(enc[c][lo] + (enc[c][hi] - enc[c][lo]) * f) for c in range(3)]
    return pre + post


@functools.cache
def ramp():
    """The identity ramp that every request first leaves in both NVIDIA arrays."""
    return [f32(j / 1023.0) for j in range(1024) for _ in range(3)] * 2




# ---- the calibration source -------------------------------------------------

DEFAULT_ICC = [[0.43607, 0.22249, 0.01392], [0.38515, 0.71687, 0.09708], [0.14307, 0.06061, 0.7141],
               [0.95045, 1.0, 1.08905]]
IDENTITY = [[i * 256 for i in range(256)] for _ in range(3)]


def primaries(block):
    return [list(struct.unpack_from('<3f', block, 12 + 12 * r)) for r in range(4)]


def crc16(data):
    """CRC-16 with polynomial 0x1021 from 0xFFFF, bit by bit."""
    crc = 0xFFFF
    for byte in data:
        crc ^= byte << 8
        for _ in range(8):
            crc = (crc << 1 ^ (0x1021 if crc & 0x8000 else 0)) & 0xFFFF
    return crc


def crc_matches(block, first, end, at):
    crc = crc16(block[first:end])
    return block[at] == crc & 255 and block[at + 1] == crc >> 8


def factory_data(block):
    """Whether the block passes the magic and both CRCs: (usable, a check failed after a good magic)."""
    if block[:4] not in (b'HDOC', b'R2R\0'):
        return False, False
    good = crc_matches(block, 12, 60, 6) and (block[4] < 5 or crc_matches(block, 103, 283, 283))
    return good, not good


# ---- the caller's record, request by request --------------------------------

class Context:
    """What a CctContext holds between the calls of one lut api type."""

    def __init__(self, caller, block, api_type):
        self.caller, self.block, self.type = caller, block, api_type
        self.icc = [row[:] for row in caller['icc']]
        self.bios = [[0.0] * 3 for _ in range(4)]
        self.from_bios = self.bios_ver = self.gamma_k = 0
        self.gamma, self.out = IDENTITY, IDENTITY
        self.igcl, self.nv, self.said = [0.0] * 768, None, {}
        self.gains = {name: [0.0] * 3 for name in ('Nor', 'W', 'C', 'RdS', 'RdW')}
        self.threshold = 0.4 if api_type in (0, 1, 4) else 0.5

    def copy(self):
        """The record as the caller restores it before each request: the gains are the only lists changed in place."""
        other = copy.copy(self)
        other.gains = {name: gain[:] for name, gain in self.gains.items()}
        return other

    def base(self):
        return self.gamma if self.from_bios and self.gamma_k else IDENTITY

    # -- request 1

    def read_source(self):
        """Fills the factory fields from the calibration file or the firmware; the error code it sets."""
        user_k, code = self.caller['enableUserK'], 0
        if user_k != 0 and not self.caller['file']:
            self.bios_ver = -1
            return -3
        block = self.block if user_k != 0 else bytes(512)  # the test firmware answers nothing
        usable, checks_failed = factory_data(block)
        if not usable:
            self.bios_ver = -1
            return -4 if checks_failed and user_k == 1 else code
        self.from_bios, self.bios_ver = 1, block[4]
        self.bios = primaries(block)
        if self.bios_ver >= 6:
            at = 297 if self.bios_ver == 6 else 298
            decoded = lut_from_string(block[at + 1:at + 2 + block[at + 1]], block[at])
            self.gamma, self.bios_ver = (decoded, self.bios_ver) if decoded else (IDENTITY, 5)
        self.gamma_k = int(self.bios_ver >= 5)
        return code

    def init(self, fixed_target):
        self.from_bios = self.gamma_k = 0
        self.gamma, status = IDENTITY, 0
        if any(r[0] <= 0 or r[1] <= 0 or r[2] < 0 or (r[2] == 0 and n >= 2) for n, r in enumerate(self.icc)):
            self.icc, status = [row[:] for row in DEFAULT_ICC], -2
        if self.caller['panelIndex'] not in (0, 1):
            return -5
        status = self.read_source() or status
        if self.from_bios:
            self.factory_gains(fixed_target)
            if self.bios_ver == 5 and self.gamma_k:
                self.gamma = factory_gamma(self.block)
        else:
            self.native_gains()
        for name in ('W', 'C', 'Nor', 'RdW', 'RdS'):
            check_gain(self.gains[name], self.base(), self.threshold)
        return status

    def factory_gains(self, fixed_target):
        solver, block = Solver(self.bios), self.block
        if self.bios_ver < 4:
            target, floor = (OLD_DEFAULT_WHITE, OLD_DEFAULT_WHITE), lambda y: (y ** 0.4 - LUM_DIFF) ** 2.5
        else:
            v = struct.unpack_from('<5f', block, 71)
            target, floor = v[3:5], (lambda y: y - (self.bios[3][1] - v[2]))
        if fixed_target:
            target, floor = (0.314, 0.351), floor if self.bios_ver < 4 else None
        normal, n_target, n_cct = solver.solve(target, lum_floor=floor)
        weak, strong = reading_targets(n_target)
        self.gains = {'Nor': normal, 'W': solver.solve(cct=n_cct - 1000)[0], 'C': solver.solve(cct=n_cct + 1000)[0],
                      'RdW': solver.solve(weak)[0], 'RdS': solver.solve(strong)[0]}

    def native_gains(self):
        solver = Solver(self.icc)
        native = mccamy(xy_of(self.icc[3]))
        weak, strong = reading_targets(xy_of(self.icc[3]))
        self.gains = {'Nor': [1.0, 1.0, 1.0], 'W': solver.solve(cct=native - 1000)[0],
                      'C': solver.solve(cct=native + 1000)[0], 'RdW': solver.solve(weak)[0],
                      'RdS': solver.solve(strong)[0]}

    # -- requests 2 to 8 and the VX modes

    def mode_lut(self, request, gain_flag, interval):
        g, base = self.gains, self.base()
        if request == 2:
            if gain_flag:
                g['Nor'] = Solver(self.bios).solve((0.314, 0.351))[0]
            v = interval if 0.5 <= interval <= 1.5 else 1.0
            s = 2 * (v - 1)
            if s == 0 and not self.from_bios:
                return IDENTITY
            return blend(abs(s), g['Nor'], g['C'] if s > 0 else g['W'], base)
        if request == 3:
            rows = self.bios if self.from_bios else self.icc
            gain = check_gain([x * 1.05 for x in Solver(rows).solve((0.3418, 0.3757))[0]], base, self.threshold)
            return [[base[c][half_up(min(i * gain[c], 255))] for i in range(256)] for c in range(3)]
        if request == 4:
            return vivid(g['Nor'], base)
        if request == 7:
            t = self.caller['rdIndex']
            t = t if 0 <= t <= self.caller['rdLevels'] - 1 else 0.0
            mixed = [(1 - t) * g['RdW'][c] + t * g['RdS'][c] for c in range(3)]
            self.said['multi'] = [f'{max(g["RdW"] if t == 0 else g["RdS"] if t == 1 else mixed):f}']
            return blend(t, g['RdW'], g['RdS'], base)
        return blend(0.0, g['RdS' if request == 5 else 'RdW'], None, base)

    def improve(self, lut):
        if self.bios_ver != 7:
            return smooth(lut, self.said['searches']) or lut
        from_file = self.caller['enableUserK'] == 1 and self.caller['file']
        step = self.block[297] if from_file else 0  # the test firmware answers 0
        self.said['steps'].append(step)
        return interpolate(lut, step)

    def finish(self, lut):
        """Brightness and conversion: the status and the LUT as brightness left it."""
        lut = bright(lut, self.type, self.caller['scale'])
        th = 0.8 if self.type == 3 else 0.1
        self.said['bright'] = [(f'{self.caller["scale"]:f}', f'{th:f}', half_up(th * 255.0))]
        self.out = lut
        if self.type == 1:
            self.out = [[min(max(math.trunc(v + 0.5), 0), 65535) for v in plane] for plane in srgb_resample(lut)]
        elif self.type == 4:
            self.igcl = [v / 65280.0 for plane in lut for v in plane]
        elif self.type == 2:
            self.nv = nvidia(lut)
        return (-6 if self.type == 6 else 0), lut

    def cctapi(self, code, interval):
        """Runs one request; the status and the tables of its trace log in dump order."""
        regamma, gain_flag, request = code & 0x80, code & 0x40, code & ~0xC0
        self.nv, self.said = ramp(), {'searches': [], 'steps': []}
        if request == 1:
            status = self.init(bool(regamma))
            self.said['init'] = [status]
            if regamma:
                self.out = compose(regamma_curve(), self.out)
            return status, self.dumped([])
        if request == 8:
            return self.native(), self.dumped([])
        lut = self.mode_lut(request, gain_flag, interval)
        improved = self.improve(compose(regamma_curve(), lut) if regamma else lut)
        status, bright_lut = self.finish(improved)
        return status, self.dumped([lut, improved, bright_lut, self.out])

    def dumped(self, steps, curve=None):
        """The tables a trace log shows: the steps of the request, then those of the record."""
        return steps + [IDENTITY] + [self.gamma] * self.gamma_k + [self.out] + ([curve] if curve else [])

    def native(self):
        if self.type == 6:
            return -6
        if self.type == 1:
            self.out = [[min(max(math.trunc(srgb_encode(i / 255.0) * 65535.0 + 0.5), 0), 65535)
                         for i in range(256)] for _ in range(3)]
        elif self.type == 2:
            self.nv = [f32(f32(j) / f32(1023.0)) for j in range(1024) for _ in range(3)] * 2
        else:
            self.out = IDENTITY
            if self.type == 4:
                self.igcl = [i / 255.0 for _ in range(3) for i in range(256)]
        return 0

    def vx(self, mode, interval, curve):
        self.said = {'searches': [], 'steps': []}
        if mode not in (3, 26, 21, 22, 23, 24, 25):
            return -1, []
        before, tone = self.out, curve
        if mode in (3, 26):
            tone = [[min(max(math.trunc(vivid_level(i) + 0.5), 0), 255) * 256 for i in range(256)]] * 3
        t = min(max(interval, 0.5), 1.5)
        n = self.gains['Nor']
        ref, anchor = (self.gains['W'], 0.5) if t < 1.0 else (self.gains['C'], 1.5)
        g = n if t == 1.0 else [ref[c] + (n[c] - ref[c]) / (1.0 - anchor) * (t - anchor) for c in range(3)]
        base = self.base()
        lut = [[base[c][math.trunc(min(max(g[c] * i, 0), 255) + 0.5)] for i in range(256)] for c in range(3)]
        composed = compose(tone, self.improve(lut))
        status, bright_lut = self.finish(composed)
        return status, self.dumped([before, composed, bright_lut, self.out], curve)
# ---- comparison with the record ---------------------------------------------

def decode_runs(words):
    """Whole numbers from run-length coded differences: "256*255" is 255 steps of 256."""
    values, value = [], 0
    for word in words:
        step, _, count = word.partition('*')
        for _ in range(int(count or 1)):
            value += int(step)
            values.append(value)
    return values


def decode_reals(words, single):
    """An IGCL or NVIDIA table: multiples of 1 / scale, or exact bit patterns (second differences per channel)."""
    values = decode_runs(words[1:])
    if words[0] != 'bits':
        return [f32(v / float(words[0][1:])) if single else v / float(words[0][1:]) for v in values]
    for _ in range(2):
        for i in range(3, len(values)):
            values[i] = (values[i] + values[i - 3]) % 2 ** 64
    form, mask = ('<f', '<I') if single else ('<d', '<Q')
    return [struct.unpack(form, struct.pack(mask, v % 2 ** (32 if single else 64)))[0] for v in values]




def read_record(path):
    """The block, the caller's inputs, every call with the fields and gains after it, and the named tables."""
    rec = {'calls': [], 'tables': {}, 'numbers': {}}
    state = {}
    for line in open(path):
        words = line.split()
        if words[0] == 'block':
            rec['block'] = bytes(int(w) for w in words[1:])
        elif words[0] == 'caller':
            rec['caller'] = {k: (v if v[0] == 'L' else float(v)) for k, v in zip(words[1::2], words[2::2])}
        elif words[0] == 'icc':
            rec['caller']['icc'] = [[float(w) for w in words[1 + 3 * r:4 + 3 * r]] for r in range(4)]
        elif words[0] == 'type':
            state = dict(state)
            rec['calls'].append({'type': int(words[1]), 'entry': words[2], 'code': int(words[3], 16),
                                 'interval': float(words[5]), 'status': int(words[7]), 'out': words[9],
                                 'igcl': words[11], 'nv': words[13], 'said': words[15:17], 'trace': words[20:],
                                 'traced': words[18:20],
                                 'state': state})
        elif words[0] == 'fromBios':
            state.update({k: float(v) for k, v in zip(words[0::2], words[1::2])})
        elif words[0] in GAINS:
            state[words[0]] = [float(w) for w in words[1:]]
        elif words[0][0] == 'L' and words[0][1:].isdigit():
            rec['tables'][words[0]] = decode_runs(words[1:])
        elif words[0][0] in 'IN' and words[0][1:].isdigit():
            rec['tables'][words[0]] = decode_reals(words[1:], words[0][0] == 'N')
        elif words[0][0] == 'V' and words[0][1:].isdigit():
            rec['numbers'][words[0]] = words[1:]
    caller = rec['caller']
    caller['curve'] = [rec['tables'][caller['curve']][256 * c:256 * c + 256] for c in range(3)]
    for key in ('enableUserK', 'panelIndex', 'file'):
        caller[key] = int(caller[key])
    return rec


GAINS = ('Nor', 'W', 'C', 'RdS', 'RdW')


def first_difference(want, got, single=False):
    flat = [v for plane in want for v in plane] if isinstance(want[0], list) else want
    if single:
        flat = array.array('f', flat).tolist()
    if flat == got:
        return None
    for i, (a, b) in enumerate(zip(flat, got)):
        if a != b:
            return f'entry {i}: reference {a!r}, recorded {b!r}'
    return f'{len(got)} entries, reference {len(flat)}'


def run(ctx, call, curve):
    if call['entry'] == 'vx':
        return ctx.vx(call['code'], call['interval'], curve)
    return ctx.cctapi(call['code'], call['interval'])


def fnv(data):
    h = 14695981039346656037
    for byte in data:
        h = (h ^ byte) * 1099511628211 % 2 ** 64
    return f'{h:x}'


def differences(ctx, call, status, dumps, tables):
    """What differs between the model's record after a call and the recorded one."""
    found = [f'status {call["status"]}, reference {status}' if status != call['status'] else None,
             first_difference(ctx.out, tables[call['out']]), first_difference(ctx.igcl, tables[call['igcl']])]
    if call['nv'] in tables:
        found.append(first_difference(ctx.nv, tables[call['nv']], single=True))
    elif call['nv'] != '#' + fnv(struct.pack('<6144f', *ctx.nv)):
        found.append(f'NVIDIA floats of digest {call["nv"]}, reference {fnv(struct.pack("<6144f", *ctx.nv))}')
    if len(dumps) != len(call['trace']):
        found.append(f'trace log of {len(call["trace"])} tables, reference {len(dumps)}')
    found += [f'trace log table {k} ({name}): {d}' for k, (dump, name) in enumerate(zip(dumps, call['trace']))
              if (d := first_difference(dump, tables[name]))]
    state = call['state']
    fields = {'fromBios': ctx.from_bios, 'biosVer': ctx.bios_ver, 'gammaK': ctx.gamma_k}
    found += [f'{k} {state[k]:g}, reference {v}' for k, v in fields.items() if state[k] != v]
    found += [f'{name} gains {state[name]}, reference {ctx.gains[name]}' for name in GAINS
              if any(abs(a - b) > 1e-9 for a, b in zip(ctx.gains[name], state[name]))]
    return [d for d in found if d]


SAID = {'searches': re.compile(r'Channel RGB\[(\S+)\]:\nsmoothLv = (\S+)\nscatterLv = (\S+)\ndiff = (\S+)\n'
                               r'lut type: (\S+)\n'),
        'steps': re.compile(r'; VOK: Get bios\[297\]: (\S+)\n'),
        'init': re.compile(r'CCT_Init  result = (\S+)\n'),
        'bright': re.compile(r'scale: (\S+), Scale TH: (\S+), nIndex: (\S+)\n'),
        'multi': re.compile(r'GetReadingModeMultiLUT  outGain = (\S+)\n')}


def said_differences(ctx, text):
    """What the call's messages report of the steps below, against what the model did."""
    found = []
    for key, pattern in SAID.items():
        told = [m.groups() for m in pattern.finditer(text)]
        done = [tuple(str(v) for v in (step if isinstance(step, tuple) else (step,))) for step in ctx.said.get(key, [])]
        if told != done:
            found.append(f'messages tell {key} {told}, reference {done}')
    return found


def said_text(rec, shapes, shape, numbers):
    """A call's messages or trace log: its shape with the record's numbers in place of the marks."""
    numbers = iter(rec['numbers'][numbers])
    return re.sub(r'\{\}', lambda _: next(numbers), shapes[shape].decode('latin-1'))


def traced_differences(ctx, call, text):
    """What the record dump of a traced call shows of the matrices, gains, factory fields and settings."""
    if not text:
        return []
    rows = lambda m: '\n'.join(' '.join(f'{v:3.3f}' for v in row) for row in m)  # noqa: E731
    shown = {'ICC': rows(ctx.icc), 'BIOS': rows(ctx.bios), 'From BIOS': ctx.from_bios, 'BIOS Ver': ctx.bios_ver,
             'GammaK': ctx.gamma_k, 'Lut Api Type': ctx.type, 'Dc Mode Scale': f'{ctx.caller["scale"]:f}',
             'RDIndex': f'{ctx.caller["rdIndex"]:f}', 'interval': f'{call["interval"]:f}'}
    shown.update({name: ' '.join(f'{g:1.5f}' for g in ctx.gains[name]) for name in GAINS})
    told = dict(re.findall(r'^(ICC|BIOS):\n((?:.*\n){3}.*)$', text, re.M))
    told.update(re.findall(r'^(From BIOS|BIOS Ver|GammaK|Lut Api Type|Dc Mode Scale|RDIndex): (.*)$', text, re.M))
    told.update(re.findall(r'^(Nor|W|C|RdS|RdW): +(.*)$', text, re.M))
    told.update(set(re.findall(r'  (interval):(\S+)', text)))
    return [f'trace log shows {key} {told.get(key)!r}, reference {str(value)!r}' for key, value in shown.items()
            if told.get(key) != str(value)]


def check_panel(path):
    """Number of calls that match and the descriptions of those that differ."""
    rec = read_record(path)
    shapes = read_shapes(os.path.join(os.path.dirname(path), os.pardir, 'messages.txt'))
    failures, matched, contexts = [], 0, {}
    for call in rec['calls']:
        api_type = call['type']
        initialising = call['entry'] == 'code' and call['code'] & ~0xC0 == 1
        if api_type not in contexts:
            contexts[api_type] = Context(rec['caller'], rec['block'], api_type)
        ctx = contexts[api_type] if initialising else contexts[api_type].copy()
        status, dumps = run(ctx, call, rec['caller']['curve'])
        found = differences(ctx, call, status, dumps if api_type == 0 else [], rec['tables'])
        found += said_differences(ctx, said_text(rec, shapes, *call['said']))
        found += traced_differences(ctx, call, said_text(rec, shapes, *call['traced']))
        where = f'type {api_type} {call["entry"]} {call["code"]:#04x} at {call["interval"]:g}'
        failures += [f'{where}: {d}' for d in found]
        matched += not found
    return matched, failures


def read_shapes(path):
    """The message and trace shapes that the records name, by name: "## name size", the text, a line end."""
    data, shapes, at = open(path, 'rb').read(), {}, 0
    while at < len(data):
        end = data.index(b'\n', at)
        name, size = data[at + 3:end].decode().split()
        shapes[name] = data[end + 1:end + 1 + int(size)]
        at = end + 1 + int(size) + 1
    return shapes


def check_shapes(path, records):
    """Every shape is named after its text, and the records name exactly the shapes the file holds."""
    shapes, named = read_shapes(path), set()
    for record in records:
        for line in open(record):
            words = line.split()
            if words[0] == 'type':
                named |= {words[15], words[18]}
    failures = [f'{name}: named after another text' for name, text in shapes.items() if fnv(text) != name]
    failures += [f'{name}: named by a record, not in {path}' for name in sorted(named - shapes.keys())]
    failures += [f'{name}: named by no record' for name in sorted(shapes.keys() - named)]
    for failure in failures:
        print(f'{path}: {failure}')
    print(f'{path}: {len(shapes)} shapes, {len(named)} named by {len(records)} records')
    return 1 if failures else 0


def main(paths):
    if paths[:1] == ['--shapes']:
        return check_shapes(paths[1], paths[2:])
    total, failed = 0, False
    for path in paths:
        matched, failures = check_panel(path)
        for failure in failures[:5]:
            print(f'{path}: {failure}')
        print(f'{path}: {matched} calls match, {len(failures)} differences')
        total += matched
        failed |= bool(failures)
    print(f'{len(paths)} panels, {total} calls (request x driver type) match the reference')
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
