#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes ../data/<Family>.txt: what each colour function gives for chosen inputs, in high precision.

A row is `function | flags and illuminant | inputs | expected | bounds`, a bound being the greatest error that the
function's float steps may make (bounded.py). Needs Python 3 and mpmath; run it after changing a formula or an
input. The random inputs have a fixed seed, so that the same script writes the same files.
"""
import itertools
import pathlib
import random
import sys

from bounded import *
import formulas as f

DATA = pathlib.Path(__file__).parent.parent / "data"
BOTH = (0, 1)


def neighbours(x):
    x = to_float(mpf(x))
    bits = struct.unpack("i", struct.pack("f", float(x)))[0]
    return [struct.unpack("f", struct.pack("i", bits + step))[0] for step in (-1, 0, 1)]


def randoms(count, low, high, size=3, seed=1):
    generator = random.Random(seed)
    return [[generator.uniform(low, high) for _ in range(size)] for _ in range(count)]


DECODE_EDGES = neighbours("0.04045")
ENCODE_EDGES = neighbours("0.0031308")
RGB = [[0, 0, 0], [1, 1, 1], [1, 0, 0], [0, 1, 0], [0, 0, 1], [0.18, 0.18, 0.18], [0.5, 0.25, 0.75],
       [0.001, 0.02, 0.003], DECODE_EDGES, ENCODE_EDGES, [0.9, 0.6, 0.1]] + randoms(4, 0, 1)
BEYOND = [[-0.5, 0.5, -0.0], [1.7, -0.02, 0.3], [-0.001, 2.5, 1.1], [-1, -1, -1],
          [-x for x in DECODE_EDGES], [-x for x in ENCODE_EDGES]]
XYZ = [[0, 0, 0], [0.96421206, 1, 0.8251883], [0.95047, 1, 1.08883], [0.4124564, 0.2126729, 0.0193339],
       [0.1, 0.0012, 0.3], [0.003, 0.004, 0.005], [1.9, 2.0, 1.8], [0.3, 0.2, 0.1]] + randoms(4, 0, 1, seed=2)
WILD_XYZ = [[0.9, 0.1, 0.1], [-0.1, 0.3, 0.2], [0.2, -0.05, 0.4]]
LAB = [[0, 0, 0], [1, 0, 0], [0.5, 0.2, -0.3], [0.07, 0.01, 0.02], [0.079, 0, 0], [0.081, 0, 0], [0.3, -0.6, 0.5],
       [0.95, -0.2, 0.9], [1.2, 0.1, 0.1], [-0.1, 0.05, 0], [0.5324, 0.8009, 0.6720]]
LAB += [[abs(L), a, b] for L, a, b in randoms(4, -1, 1, seed=3)]
LUV = [[0, 0.3, -0.4], [1, 0, 0], [0.5, 0.2, -0.3], [0.07, 0.01, 0.02], [0.079, 0, 0], [0.081, 0, 0],
       [0.3, -0.2, 0.25], [1.2, 0.1, 0.1], [0.5324, 1.7501, 0.3775]]
LUV += [[abs(L), a / 2, b / 2] for L, a, b in randoms(4, -1, 1, seed=4)]
POLAR = [[0, 0, 0], [0.5, 0.3, 0], [0.5, 0.3, 0.4], [0.5, -0.3, 0.4], [0.5, -0.3, -0.4], [0.5, 0.3, -0.4],
         [0.2, 0, 0.1], [0.2, 0, -0.1]] + randoms(4, -1, 1, seed=5)
IPT = [[0, 0, 0], [1, 0, 0], [0.5, 0.2, -0.1], [0.3, -0.4, 0.5], [0.7, 0.1, 0.3], [0.2, 0.6, 0.6], [-0.3, 0.1, 0.1],
       [0.9, -0.05, 0.02]] + [[abs(I), P / 3, T / 3] for I, P, T in randoms(4, -1, 1, seed=6)]
ICH = [[0, 0, 0], [0.5, 0.1, 1.5707964], [0.6, 0.3, -2.5], [0.4, 0.2, 3.0], [0.8, 0.05, 0.7]]
YXY = [[0, 0, 0], [0.5, 0.3, 0], [1, 0.3127, 0.3290], [0.2, 0.64, 0.33], [0.7, 0.3, 0.6], [0.07, 0.15, 0.06],
       [0.5, 0.1, -0.2]] + randoms(3, 0.1, 0.5, seed=7)
HSV = [[0, 0, 0.4], [0, 1, 1], [1, 0.5, 0.8], [0.99, 0.5, 0.8], [0.1, 0.7, 0.6], [0.2, 0.7, 0.6], [0.4, 0.7, 0.6],
       [0.5, 1, 1], [0.6, 0.7, 0.6], [0.7, 0.7, 0.6], [0.9, 0.7, 0.6], [-0.1, 0.7, 0.6], [1.3, 0.7, 0.6],
       [0.25, 0.3, 2]]
Y = [[v] for v in [0, 1, 0.18, 0.5, 0.001, 0.008, 1.5, 0.0031] + ENCODE_EDGES + neighbours("0.008856")]
SIGNED = [[v] for v in [0, 1, 0.18, 0.5, 0.001, 1.5, -0.2, -0.001] + DECODE_EDGES + ENCODE_EDGES]
CODE709 = [[0.0, 0.5, 1.0], neighbours("0.081"), neighbours("0.018"), [-0.1, 0.05, 1.3]] + randoms(3, 0, 1, seed=8)
ANGLES = [0, 0.5, 1.5707964, -2.0, 3.1415927, 7.0]


class Table:
    def __init__(self):
        self.rows = []
        self.left_out = 0

    def add(self, name, function, flags, inputs):
        """One row for each combination of flags and each input; function(*flags, colour) or of numbers."""
        for chosen in itertools.product(*flags):
            for values in inputs:
                arguments = [Real(to_float(v)) for v in values]
                try:
                    result = function(*chosen, arguments)
                except Undecided:
                    self.left_out += 1
                    continue
                self.rows.append(row(name, chosen, arguments, flat(result)))

    def write(self, family):
        # A family loses a few rows to comparisons that rounding decides, never a large share.
        assert self.left_out <= 0.15 * len(self.rows), (family, self.left_out, len(self.rows))
        (DATA / (family + ".txt")).write_text("\n".join(["# SPDX-License-Identifier: MIT"] + self.rows) + "\n")
        print("%-20s %5d rows, %d undecided" % (family, len(self.rows), self.left_out))


def flat(result):
    if isinstance(result, Real):
        return [result]
    return [x for part in result for x in flat(part)]


def number(x, digits):
    return mpmath.nstr(x, digits, strip_zeros=True, min_fixed=-5, max_fixed=8) if x else "0"


def row(name, flags, arguments, results):
    def expected(r):
        return number(r.value, 17 if r.bound == 0 else 12)

    def bound(r):
        # Rounded up, with room for the digits that `expected` leaves off.
        return number((r.bound + abs(r.value) * mpf("1e-11")) * mpf("1.01"), 3) if r.bound else "0"

    return " | ".join([name, " ".join(str(flag) for flag in flags),
                       " ".join("-0" if str(float(a.value)) == "-0.0" else number(a.value, 9) for a in arguments),
                       " ".join(map(expected, results)), " ".join(map(bound, results))])


def tone_curves():
    t = Table()
    t.add("NonlinearToLinear", f.decode3, [BOTH, BOTH], RGB)
    t.add("NonlinearToLinear", f.decode3, [BOTH, (1,)], BEYOND)
    t.add("NonlinearToLinear", f.decode3, [(0,), (0,)], BEYOND)
    t.add("LinearToNonlinear", f.encode3, [BOTH, BOTH], RGB)
    t.add("LinearToNonlinear", f.encode3, [BOTH, (1,)], BEYOND)
    t.add("LinearToNonlinear", f.encode3, [(0,), (0,)], BEYOND)
    for g in BOTH:
        values = [v for v in SIGNED if v[0] >= 0 or not g]
        t.add("NonlinearToLinearScalar", lambda g, v: f.decode(g, v[0]), [(g,)], values)
        t.add("LinearToNonlinearScalar", lambda g, v: f.encode(g, v[0]), [(g,)], values)
    t.add("NonlinearToLinear709", lambda v: [f.rec709_decode(c) for c in v], [], CODE709)
    t.add("LinearToNonlinear709", lambda v: [f.rec709_encode(c) for c in v], [], CODE709)
    t.add("NonlinearToLinearApple709", lambda v: [power(c, "1.961") for c in v], [], RGB)
    t.add("LinearToNonlinearApple709", lambda v: [power(c, "0.5099439") for c in v], [], RGB)
    t.add("SRGBToRGB709", lambda v: [f.rec709_encode(f.srgb_decode(c)) for c in v], [], RGB + [[-0.1, 0.1, 1.2]])
    t.write("ToneCurves")


def xyz():
    t = Table()
    t.add("LinearRGBToXYZ", f.rgb_to_xyz, [BOTH], RGB + BEYOND)
    t.add("XYZToLinearRGB", f.xyz_to_rgb, [BOTH, BOTH], XYZ + WILD_XYZ)
    t.add("SRGBToXYZ", f.srgb_to_xyz, [BOTH, BOTH, BOTH], RGB[3:])
    t.add("SRGBToXYZ", f.srgb_to_xyz, [BOTH, (1,), BOTH], BEYOND[:3])
    t.add("XYZToSRGB", f.xyz_to_srgb, [BOTH, BOTH, BOTH], XYZ[3:] + WILD_XYZ)
    t.add("YToXYZ", lambda i, v: f.grey_xyz(i, v[0]), [BOTH], SIGNED[:8])
    t.add("XYZtoXYZWithModifiedY", lambda i, v: f.with_modified_Y(i, v[:3], v[3]), [BOTH],
          [c + [Y] for c in XYZ[1:] + [[0.3, 0, 0.2]] for Y in (0.5, 0)])
    t.add("LinearRGBToLinearY", f.luminance, [BOTH, BOTH], RGB + BEYOND)
    t.add("SRGBToLinearY", lambda g, e, i, v: f.luminance(e, i, f.decode3(g, e, v)), [BOTH, BOTH, BOTH], RGB[3:])
    t.add("SRGBToLinearY", lambda g, e, i, v: f.luminance(e, i, f.decode3(g, e, v)), [BOTH, (1,), BOTH], BEYOND)
    t.add("LinearRGBToNonlinearY", lambda g, e, i, v: f.encode(g, f.luminance(e, i, v)), [BOTH, BOTH, BOTH], RGB[3:])
    t.add("LinearRGBToNonlinearY", lambda g, e, i, v: f.encode(g, f.luminance(e, i, v)), [(0,), (1,), BOTH], BEYOND)
    t.add("SRGBToNonlinearY", lambda g, e, i, v: f.encode(g, f.luminance(e, i, f.decode3(g, e, v))),
          [BOTH, BOTH, BOTH], RGB[3:])
    t.write("XYZ")


def lab():
    t = Table()
    t.add("XYZtoLab", f.xyz_to_lab, [BOTH], XYZ + WILD_XYZ + [[0.5, y, 0.5] for y in neighbours("0.008856")])
    t.add("LabToXYZ", f.lab_to_xyz, [BOTH], LAB)
    t.add("LinearRGBToLab", f.rgb_to_lab, [BOTH], RGB + BEYOND)
    t.add("LabToLinearRGB", f.lab_to_rgb, [BOTH, BOTH], LAB)
    t.add("SRGBToLab", lambda e, g, i, v: f.rgb_to_lab(i, f.decode3(g, e, v)), [BOTH, BOTH, BOTH], RGB[5:])
    t.add("SRGBToLab", lambda e, g, i, v: f.rgb_to_lab(i, f.decode3(g, e, v)), [(1,), BOTH, BOTH], BEYOND[:3])
    t.add("LabToSRGB", lambda g, e, i, v: f.encode3(g, e, f.unit(f.lab_to_rgb(e, i, v))), [BOTH, BOTH, BOTH], LAB[2:])
    t.add("ExtendedRangeSRGBToLab", lambda g, i, v: f.xyz_to_lab(i, f.srgb_to_xyz(g, True, 0, v)), [BOTH, BOTH],
          RGB[5:] + BEYOND[:3])
    t.add("LabToExtendedRangeSRGB", lambda g, i, v: f.xyz_to_srgb(g, True, 0, f.lab_to_xyz(i, v)), [BOTH, BOTH],
          LAB[2:])
    t.add("LabToLCh", f.polar, [], POLAR)
    t.add("LChSaturation", lambda v: f.saturation(v[0], v[1]), [], POLAR)
    pairs = [a + b for a, b in zip(RGB[2:], RGB[3:])]
    t.add("DeltaESquaredLinearRGBLinearRGB",
          lambda i, v: f.distance_squared(f.rgb_to_lab(i, v[:3]), f.rgb_to_lab(i, v[3:])), [BOTH], pairs)
    t.add("DeltaESquaredLinearRGBLab", lambda i, v: f.distance_squared(f.rgb_to_lab(i, v[:3]), v[3:]), [BOTH],
          [a + b for a, b in zip(RGB[2:], LAB)])
    t.write("Lab")


def luv():
    t = Table()
    t.add("XYZtoLuv", f.xyz_to_luv, [BOTH], XYZ + WILD_XYZ + [[0.5, y, 0.5] for y in neighbours("0.008856")])
    t.add("LuvToXYZ", f.luv_to_xyz, [BOTH], LUV)
    t.add("LinearRGBToLuv", lambda i, v: f.xyz_to_luv(i, f.rgb_to_xyz(i, v)), [BOTH], RGB[1:] + BEYOND[1:4])
    t.add("LuvToLinearRGB", lambda e, i, v: f.xyz_to_rgb(e, i, f.luv_to_xyz(i, v)), [BOTH, BOTH], LUV)
    t.add("SRGBToLuv", lambda g, e, i, v: f.xyz_to_luv(i, f.srgb_to_xyz(g, e, i, v)), [BOTH, BOTH, BOTH], RGB[5:])
    t.add("SRGBToLuv", lambda g, e, i, v: f.xyz_to_luv(i, f.srgb_to_xyz(g, e, i, v)), [BOTH, (1,), BOTH], BEYOND[1:3])
    t.add("LuvToSRGB", lambda g, e, i, v: f.xyz_to_srgb(g, e, i, f.luv_to_xyz(i, v)), [BOTH, BOTH, BOTH], LUV[2:])
    t.add("LuvToLChuv", f.polar, [], POLAR)
    t.add("LChuvSaturation", lambda v: f.saturation(v[0], v[1]), [], POLAR)
    t.write("Luv")


def lxx():
    t = Table()
    def of_rgb(v):
        return f.lightness(dot(f.LUMINANCE[1], v))
    t.add("LinearYToLXX", lambda v: f.lightness(v[0]), [], Y + [[-0.1]])
    t.add("LXXToLinearY", lambda v: f.inverse_lightness(v[0]), [], Y + [[-0.1], [0.07999], [0.08001]])
    t.add("LinearRGBToLXX", of_rgb, [], RGB + BEYOND)
    t.add("SRGBToLXX", lambda g, e, v: of_rgb(f.decode3(g, e, v)), [BOTH, BOTH], RGB)
    t.add("SRGBToLXX", lambda g, e, v: of_rgb(f.decode3(g, e, v)), [BOTH, (1,)], BEYOND)
    t.add("SRGBYToLXX", lambda g, v: f.lightness(f.decode(g, v[0])), [BOTH], Y)
    t.add("LXXToSRGBY", lambda g, v: f.encode(g, f.inverse_lightness(v[0])), [BOTH], Y)
    t.write("LXX")


def yxy():
    t = Table()
    t.add("XYZToYxy", f.xyz_to_yxy, [], XYZ + WILD_XYZ + [[-0.3, 0.1, 0.1]])
    t.add("YxyToXYZ", f.yxy_to_xyz, [], YXY)
    t.add("LinearRGBToYxy", lambda i, v: f.xyz_to_yxy(f.rgb_to_xyz(i, v)), [BOTH], RGB + BEYOND)
    t.add("YxyToLinearRGB", lambda e, i, v: f.xyz_to_rgb(e, i, f.yxy_to_xyz(v)), [BOTH, BOTH], YXY)
    t.write("Yxy")


def hsv():
    t = Table()
    t.add("RGBToHSV", f.rgb_to_hsv, [], RGB + BEYOND[:3] + [[1, 1, 0], [0, 1, 1], [1, 0, 1], [1, 0.2, 0.9]])
    t.add("HSVToRGB", f.hsv_to_rgb, [], HSV)
    t.write("HSV")


def yiq():
    t = Table()
    for name, matrix in (("RGBToYIQ", f.YIQ), ("YIQToRGB", f.INVERSE_YIQ), ("SRGBToYCbCr", f.YCBCR),
                         ("YCbCrToSRGB", f.INVERSE_YCBCR)):
        t.add(name, lambda v: apply(matrix, v), [], RGB[:7] + RGB[11:] + BEYOND[1:3] + LAB[2:5])
    t.write("YIQ")


def ipt():
    t = Table()
    t.add("XYZToIPT", f.xyz_to_ipt, [BOTH], XYZ + WILD_XYZ)
    t.add("IPTToXYZ", f.ipt_to_xyz, [BOTH], IPT)
    t.add("LinearRGBToIPT", f.rgb_to_ipt, [BOTH], RGB + BEYOND)
    t.add("IPTToLinearRGB", f.ipt_to_rgb, [BOTH, BOTH], IPT)
    t.add("SRGBToIPT", lambda g, e, i, v: f.rgb_to_ipt(i, f.decode3(g, e, v)), [BOTH, BOTH, BOTH], RGB[5:])
    t.add("SRGBToIPT", lambda g, e, i, v: f.rgb_to_ipt(i, f.decode3(g, e, v)), [BOTH, (1,), BOTH], BEYOND[1:3])
    t.add("IPTToSRGB", lambda g, e, i, v: f.encode3(g, e, f.ipt_to_rgb(e, i, v)), [BOTH, BOTH, BOTH], IPT[2:])
    t.add("LinearYToIXX", lambda v: power(v[0], "0.43"), [], Y)
    t.add("IPTSaturation", f.ipt_saturation, [], POLAR)
    t.add("IPTToICH", f.ipt_to_ich, [], POLAR)
    t.add("ICHToIPT", f.ich_to_ipt, [], ICH)
    t.add("IPTToXXH", lambda v: f.ipt_to_ich(v)[2], [], POLAR)
    t.add("LinearRGBToICH", lambda i, v: f.ipt_to_ich(f.rgb_to_ipt(i, v)), [BOTH], RGB[6:])
    t.add("ICHToLinearRGB", lambda e, i, v: f.ipt_to_rgb(e, i, f.ich_to_ipt(v)), [BOTH, BOTH], ICH)
    t.add("ICHSaturation", lambda v: f.saturation(v[0], v[1]), [], POLAR)
    t.add("SRGBToLMS", lambda g, e, i, v: apply(f.XYZ_TO_LMS[i], f.srgb_to_xyz(g, e, i, v)), [BOTH, BOTH, BOTH],
          RGB[5:])
    t.write("IPT")


def display_p3():
    t = Table()
    t.add("LinearDisplayP3ToXYZ", lambda i, v: apply(f.P3_TO_XYZ[i], v), [BOTH], RGB + BEYOND)
    t.add("XYZToLinearDisplayP3", lambda i, v: apply(f.XYZ_TO_P3[i], v), [BOTH], XYZ + WILD_XYZ)
    t.add("DisplayP3ToXYZ", f.p3_to_xyz, [BOTH, BOTH], RGB)
    t.add("XYZToDisplayP3", f.xyz_to_p3, [BOTH, BOTH], XYZ + WILD_XYZ)
    t.add("LinearDisplayP3ToDisplayP3", lambda g, v: f.encode3(g, False, v), [BOTH], RGB + [[1.4, 2, 0.5]])
    t.add("DisplayP3ToSRGB", lambda g, e, i, v: f.xyz_to_srgb(g, e, i, f.p3_to_xyz(g, i, v)), [BOTH, BOTH, BOTH],
          RGB[2:])
    t.add("SRGBToDisplayP3", lambda g, e, i, v: f.xyz_to_p3(g, i, f.srgb_to_xyz(g, e, i, v)), [BOTH, BOTH, BOTH],
          RGB[2:])
    t.add("SRGBToDisplayP3", lambda g, e, i, v: f.xyz_to_p3(g, i, f.srgb_to_xyz(g, e, i, v)), [BOTH, (1,), BOTH],
          BEYOND[:4])
    t.add("DisplayP3ToLab", lambda g, i, v: f.xyz_to_lab(i, f.p3_to_xyz(g, i, v)), [BOTH, BOTH], RGB)
    t.add("LabToDisplayP3", lambda g, i, v: f.xyz_to_p3(g, i, f.lab_to_xyz(i, v)), [BOTH, BOTH], LAB)
    t.add("DisplayP3ToIPT", lambda g, i, v: f.xyz_to_ipt(i, f.p3_to_xyz(g, i, v)), [BOTH, BOTH], RGB)
    t.add("IPTToDisplayP3", lambda g, i, v: f.xyz_to_p3(g, i, f.ipt_to_xyz(i, v)), [BOTH, BOTH], IPT)
    t.add("LinearDisplayP3ToIPT", lambda i, v: f.xyz_to_ipt(i, apply(f.P3_TO_XYZ[i], v)), [BOTH], RGB + BEYOND)
    t.add("IPTToLinearDisplayP3", lambda i, v: apply(f.XYZ_TO_P3[i], f.ipt_to_xyz(i, v)), [BOTH], IPT)
    t.add("LinearDisplayP3ToLinearY", f.p3_luminance, [BOTH], RGB + BEYOND)
    t.add("DisplayP3ToLinearY", lambda g, i, v: f.p3_luminance(i, f.decode3(g, False, v)), [BOTH, BOTH], RGB)
    t.add("DisplayP3ToDisplayP3Y",
          lambda g, ignored, i, v: f.encode(g, f.p3_luminance(i, f.decode3(g, False, v))).clamped(),
          [BOTH, BOTH, BOTH], RGB)
    t.write("DisplayP3")


def adjustments():
    t = Table()
    t.add("ComplementaryColor", f.complementary, [], RGB + [[1, 1, 0], [0, 1, 1]])
    t.add("HaeberliSaturationMatrix", lambda luma, e, i, v: f.saturation_matrix(luma, e, i, v[0]), [BOTH, BOTH, BOTH],
          [[0], [1], [0.5], [1.75], [-1]])
    t.add("HaeberliHueRotationMatrix", lambda luma, e, i, keep, v: f.hue_rotation(luma, e, i, v[0], keep),
          [BOTH, BOTH, BOTH, BOTH], [[a] for a in ANGLES[:4]])
    t.add("YIQHueRotation", lambda v: f.yiq_hue_rotation(v[0]), [], [[a] for a in ANGLES])
    pairs = [a + b for a, b in zip(RGB[6:] + RGB[2:5], RGB[2:])]
    t.add("ColorCorrectionMethodPouli", lambda n, e, i, v: f.pouli(n, e, i, v[:3], v[3:]), [BOTH, BOTH, BOTH], pairs)
    t.add("ToneCurveModifiedHable", lambda v: f.hable(*v), [],
          [[0.22, 0.3, 0.5, 0.06, x] for x in (0, 0.1, 1, 4, 11.2)] + [[0.15, 0.5, 1.0, 0.3, 0.7]])
    curves = [[0, 0.5, 0.3, 0.8, 4], [0.05, 0, 0.4, 0, 1], [0.1, 0.75, 0.25, 0.5, 2.5]]
    t.add("ToneCurveInsomniacGames", lambda inverse, v: f.insomniac(v[:5], inverse, v[5]), [BOTH],
          [c + [x] for c in curves for x in (0, 0.05, 0.15, 0.3, 0.45, 0.9, 1)])
    t.add("ToneCurveCoefficientsInsomniacGames", lambda v: f.insomniac_coefficients(*v), [], curves)
    t.add("Highlights", lambda v: f.highlights(*v), [], [[0.5, 0.5], [0.2, 0.25], [0.9, 0.1], [0.05, 0.8]])
    t.write("Adjustments")


def chromatic_adaptation():
    t = Table()
    whites = [[0.96421206, 1, 0.8251883], [0.95047, 1, 1.08883], [1.09850, 1, 0.35585], [0.6, 0.5, 0.4]]
    t.add("ChromaticAdaptationMatrix", lambda v: f.adaptation(v[:3], v[3:]), [],
          [a + b for a in whites for b in whites])
    t.write("ChromaticAdaptation")


if __name__ == "__main__":
    DATA.mkdir(exist_ok=True)
    for family in (tone_curves, xyz, lab, luv, lxx, yxy, hsv, yiq, ipt, display_p3, adjustments, chromatic_adaptation):
        if len(sys.argv) < 2 or family.__name__ in sys.argv[1:]:
            family()
