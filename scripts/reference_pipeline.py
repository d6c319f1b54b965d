#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Recomputes panels' gains and driver outputs from the formulas, apart from the
library, and compares them with the end-to-end records
(tests/data/e2e/records/*.txt).

For a calibration block of version 1 to 4 (identity base LUT) or 6 and later
(base LUT decoded from its LUT string, by position lists or the fixed Huffman
code), it solves the five white-point gains of the initialisation request,
then builds request 2 at slider positions 1.0, 0.75 and 1.4 and the theater,
vivid and reading requests 3 to 7, improves each LUT (dark-end smoothing, or
step interpolation for version 7), applies the brightness scale and converts
it for every lut api type 0 to 6: plain and sRGB-folded 16-bit tables, the
IGCL doubles, the NVIDIA floats (where the record keeps them by value), the
QCOM brightness and the rejected type 6. Not covered: version 5 factory gamma
tables, the panels without factory data, the re-gamma and gain flags and the
VX modes.

Usage: reference_pipeline.py RECORD[:SCALE[:STEP]]...   (exit status 1 on any difference)
"""
import math
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


def init_gains(block, base, threshold):
    version = block[4]
    rows = [list(struct.unpack_from('<3f', block, 12 + 12 * r)) for r in range(4)]
    first_white, lum_target, default_white = (0.3, 0.315), 0.0, (0.0, 0.0)
    if version >= 4:
        v = struct.unpack_from('<5f', block, 71)
        first_white, lum_target, default_white = v[0:2], v[2], v[3:5]
    solver = Solver(rows)
    if version < 4:
        normal = solver.solve((OLD_DEFAULT_WHITE, OLD_DEFAULT_WHITE),
                              lum_floor=lambda y: (y ** 0.4 - LUM_DIFF) ** 2.5)
    else:
        drop = rows[3][1] - lum_target
        normal = solver.solve(default_white, lum_floor=lambda y: y - drop)
    n_gain, n_target, n_cct = normal
    warm = solver.solve(cct=n_cct - 1000)[0]
    cold = solver.solve(cct=n_cct + 1000)[0]
    weak, strong = reading_targets(n_target)
    gains = {'Nor': n_gain, 'W': warm, 'C': cold,
             'RdW': solver.solve(weak)[0], 'RdS': solver.solve(strong)[0]}
    for name in ('W', 'C', 'Nor', 'RdW', 'RdS'):
        check_gain(gains[name], base, threshold)
    return gains, solver


def theater(solver, base, threshold):
    gain = check_gain([g * 1.05 for g in solver.solve((0.3418, 0.3757))[0]], base, threshold)
    return [[base[c][half_up(min(i * gain[c], 255))] for i in range(256)] for c in range(3)]


# ---- LUT steps --------------------------------------------------------------

def apply_gains(gain, base):
    return [[base[c][half_up(i * gain[c]) % 65536] for i in range(256)] for c in range(3)]


def blend(t, a, b, base):
    t = min(max(t, 0.0), 1.0)
    gain = a if t == 0 else b if t == 1 else [(1 - t) * a[c] + t * b[c] for c in range(3)]
    return apply_gains(gain, base)


def vivid(gain, base):
    out = [[0] * 256 for _ in range(3)]
    for i in range(256):
        x = i if i < 50 else 0.00309841269841269 * i * i - 1.01587301587301e-5 * i ** 3 + 0.87047619047619 * i
        for c in range(3):
            out[c][i] = base[c][math.trunc(min(max(x * gain[c], 0.0), 255.0) + 0.5)]
    return out


def smooth(lut):
    """Dark-end smoothing of the 8-bit LUT; None when a channel offers no smoothing point."""
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


def srgb_resample(lut):
    """Entry i of the LUT re-read at the sRGB encoding of i / 255, linearly between neighbours."""
    out = [[0.0] * 256 for _ in range(3)]
    for i in range(256):
        x = i / 255.0
        p = (x * 12.92 if x <= 0.0031308 else 1.055 * x ** (1 / 2.4) - 0.055) * 255.0
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


def tail(lut, api_type, scale, step):
    """Improvement, brightness and conversion: (outLut, IGCL doubles or None, NVIDIA floats or None)."""
    if step is not None:
        lut = interpolate(lut, step)
    else:
        lut = smooth(lut) or lut
    lut = bright(lut, api_type, scale)
    if api_type == 1:
        return [[min(max(math.trunc(v + 0.5), 0), 65535) for v in plane] for plane in srgb_resample(lut)], None, None
    if api_type == 4:
        return lut, [v / 65280.0 for plane in lut for v in plane], None
    return lut, None, nvidia(lut) if api_type == 2 else None


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
    """The block, the type 0 gains after initialisation, each call's outputs and the tables they name."""
    block, gains, calls, tables, case = None, {}, {}, {}, None
    for line in open(path):
        words = line.split()
        if words[0] == 'block':
            block = bytes(int(w) for w in words[1:])
        elif words[0] == 'type':
            case = (int(words[1]), words[2], int(words[3], 16), float(words[5]))
            calls[case] = (int(words[7]), words[9], words[11], words[13])
        elif words[0] in ('Nor', 'W', 'C', 'RdS', 'RdW') and case == (0, 'code', 1, 1.0):
            gains[words[0]] = [float(w) for w in words[1:]]
        elif words[0][0] == 'L' and words[0][1:].isdigit():
            tables[words[0]] = decode_runs(words[1:])
        elif words[0][0] in 'IN' and words[0][1:].isdigit():
            tables[words[0]] = decode_reals(words[1:], words[0][0] == 'N')
    return block, gains, calls, tables


def factory_base(block):
    """The base LUT of the gain modes and the interpolation step: identity below version 6, else the LUT string."""
    version = block[4]
    identity = [[i * 256 for i in range(256)] for _ in range(3)]
    if version < 5:
        return identity, None
    if version == 5:
        raise NotImplementedError('the factory gamma table of version 5 data')
    at = 297 if version == 6 else 298
    base = lut_from_string(block[at + 1:at + 2 + block[at + 1]], block[at])
    if base is None:
        raise NotImplementedError('a LUT string that does not decode')
    return base, block[297] if version == 7 else None


def requests(gains, solver, base, threshold):
    """The LUT that each request of the record builds before improvement, by (code, interval)."""
    return {
        (2, 1.0): blend(0.0, gains['Nor'], gains['Nor'], base),
        (2, 0.75): blend(0.5, gains['Nor'], gains['W'], base),
        (2, 1.4): blend(0.8, gains['Nor'], gains['C'], base),
        (3, 1.0): theater(solver, base, threshold),
        (4, 1.0): vivid(gains['Nor'], base),
        (5, 1.0): blend(0.0, gains['RdS'], gains['RdS'], base),
        (6, 1.0): blend(0.0, gains['RdW'], gains['RdW'], base),
        (7, 1.0): blend(0.5, gains['RdW'], gains['RdS'], base),  # rdIndex 0.5
    }


def first_difference(want, got, single=False):
    flat = [v for plane in want for v in plane] if isinstance(want[0], list) else want
    for i, (a, b) in enumerate(zip(flat, got)):
        if (f32(a) if single else a) != b:
            return f'entry {i}: reference {a!r}, recorded {b!r}'
    return None if len(flat) == len(got) else f'{len(got)} entries, reference {len(flat)}'


def check_panel(path, scale, step_override):
    """Number of (request, type) calls that match and the descriptions of those that differ."""
    block, recorded, calls, tables = read_record(path)
    base, step = factory_base(block)
    step = step if step_override is None else step_override
    failures, matched = [], 0
    for api_type in range(7):
        threshold = 0.4 if api_type in (0, 1, 4) else 0.5
        gains, solver = init_gains(block, base, threshold)
        if api_type == 0:
            for name, triple in gains.items():
                if any(abs(a - b) > 1e-9 for a, b in zip(triple, recorded[name])):
                    failures.append(f'{name} gains {triple} != recorded {recorded[name]}')
        for (code, interval), lut in requests(gains, solver, base, threshold).items():
            status, out, igcl, nv = calls[(api_type, 'code', code, interval)]
            want_out, want_igcl, want_nv = tail(lut, api_type, scale, step)
            where = f'type {api_type} request {code} at {interval}'
            diffs = [(f'status {status}' if status != (-6 if api_type == 6 else 0) else None),
                     first_difference(want_out, tables[out])]
            if want_igcl is not None:
                diffs.append(first_difference(want_igcl, tables[igcl]))
            if want_nv is not None and nv in tables:
                diffs.append(first_difference(want_nv, tables[nv], single=True))
            diffs = [d for d in diffs if d]
            failures += [f'{where}: {d}' for d in diffs]
            matched += not diffs
    return matched, failures


def main(args):
    """Each argument is RECORD[:SCALE[:STEP]], the brightness scale and fetched step the record was made with."""
    total, failed = 0, False
    for arg in args:
        path, *rest = arg.split(':')
        scale = float(rest[0]) if rest else 1.0
        step = int(rest[1]) if len(rest) > 1 else None
        matched, failures = check_panel(path, scale, step)
        for failure in failures[:5]:
            print(f'{path}: {failure}')
        print(f'{path}: {matched} calls match, {len(failures)} differences')
        total += matched
        failed |= bool(failures)
    print(f'{len(args)} panels, {total} calls (request x driver type) match the reference')
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
