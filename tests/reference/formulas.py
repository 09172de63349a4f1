# SPDX-License-Identifier: MIT
"""The published formulas of each colour space, restated over bounded reals with the library's float constants.

Written from the publications (docs/bibliography.md), not from the C++. Flags g and e are useGamma22 and
extendedRange; i is the illuminant, 0 for D50 and 1 for D65.
"""
from bounded import *

WHITE = [["0.96421206", 1, "0.8251883"], ["0.95047", 1, "1.08883"]]
INVERSE_WHITE = [["1.0371163", 1, "1.2118447"], ["1.0521111", 1, "0.91841704"]]
LUMINANCE = [["0.222488", "0.716873", "0.0606079"], ["0.2126729", "0.7151522", "0.072175"]]
LUMA = ["0.299", "0.587", "0.114"]
RGB_TO_XYZ = [
    [["0.436066", "0.385147", "0.143066"], LUMINANCE[0], ["0.013916", "0.0970764", "0.714096"]],
    [["0.4124564", "0.3575761", "0.1804375"], LUMINANCE[1], ["0.0193339", "0.119192", "0.9503041"]],
]
XYZ_TO_RGB = [
    [["3.134107", "-1.61739", "-0.49063084"], ["-0.9787841", "1.9162782", "0.033453677"],
     ["0.07198278", "-0.22898574", "1.4053854"]],
    [["3.2404542", "-1.5371385", "-0.4985314"], ["-0.969266", "1.8760108", "0.041556"],
     ["0.0556434", "-0.2040259", "1.0572252"]],
]
XYZ_TO_LMS = [
    [["0.38978124", "0.6891059", "-0.07869438"], ["-0.2297844", "1.1832682", "0.04640483"], [0, 0, "1.2118447"]],
    [["0.4002", "0.7075", "-0.0807"], ["-0.228", "1.15", "0.0612"], [0, 0, "0.9184"]],
]
LMS_TO_XYZ = [
    [["1.9098477", "-1.1122478", "0.16661209"], ["0.3708823", "0.62912434", "-0.000006647009"],
     [0, 0, "0.8251883"]],
    [["1.8502429", "-1.1383016", "0.23843496"], ["0.36683077", "0.64388454", "-0.010673446"],
     [0, 0, "1.0888501"]],
]
LMS_TO_IPT = [["0.4", "0.4", "0.2"], ["4.455", "-4.851", "0.396"], ["0.8056", "0.3572", "-1.1628"]]
IPT_TO_LMS = [[1, "0.097568944", "0.20522647"], [1, "-0.11387651", "0.13321717"], [1, "0.03261511", "-0.6768873"]]
P3_TO_XYZ = [
    [["0.51512", "0.29198", "0.1571"], ["0.2412", "0.69225", "0.06657"], ["-0.00105", "0.04189", "0.78407"]],
    [["0.48661506", "0.26570842", "0.19811705"], ["0.22900409", "0.6917502", "0.079260424"],
     ["-0.0000018305145", "0.04512138", "1.04334"]],
]
XYZ_TO_P3 = [
    [["2.4039984", "-0.98990643", "-0.39763042"], ["-0.8422597", "1.7988461", "0.016031504"],
     ["0.048218217", "-0.09743143", "1.2740071"]],
    [["2.4933612", "-0.9314588", "-0.40269667"], ["-0.8295389", "1.7627028", "0.023609964"],
     ["0.03587949", "-0.076233335", "0.95743847"]],
]
BRADFORD = [["0.8951", "0.2664", "-0.1614"], ["-0.7502", "1.7135", "0.0367"], ["0.0389", "-0.0685", "1.0296"]]
INVERSE_BRADFORD = [["0.9869929", "-0.1470543", "0.1599627"], ["0.4323053", "0.5183603", "0.0492912"],
                    ["-0.0085287", "0.0400428", "0.9684867"]]
YIQ = [["0.299", "0.587", "0.114"], ["0.595716", "-0.274453", "-0.321263"], ["0.211456", "-0.522591", "0.311135"]]
INVERSE_YIQ = [[1, "0.9563", "0.621"], [1, "-0.2721", "-0.6474"], [1, "-1.107", "1.7047"]]
YCBCR = [["0.299", "0.587", "0.114"], ["-0.169", "-0.331", "0.5"], ["0.5", "-0.419", "-0.081"]]
INVERSE_YCBCR = [[1, 0, "1.402"], [1, "-0.344", "-0.714"], [1, "1.772", 0]]


def unit(v):
    return [c.clamped() for c in v]


# Tone curves: IEC 61966-2-1:1999, clause 5; ITU-R BT.709-6, item 1.2.

def srgb_decode(c):
    return power((c + "0.055") * "0.94786733", "2.4") if c > "0.04045" else c * "0.07739938"


def srgb_encode(c):
    return power(c, "0.41666666") * "1.055" - "0.055" if c > "0.0031308" else c * "12.92"


def decode(g, c):
    return power(c, "2.2") if g else srgb_decode(c)


def encode(g, c):
    return power(c, "0.45454544") if g else srgb_encode(c)


def mirrored(e, curve, c):
    if not e:
        return curve(c)
    if c.value == 0 and c.bound == 0:
        return Real(0)
    return curve(c) if c > 0 else -curve(-c)


def decode3(g, e, v):
    return [mirrored(e, lambda c: decode(g, c), c) for c in v]


def encode3(g, e, v):
    return [mirrored(e, lambda c: encode(g, c), c) for c in v]


def rec709_decode(c):
    return power((c + "0.099") * "0.9099181", "2.2222223") if c > "0.081" else c * "0.22222222"


def rec709_encode(c):
    return power(c, "0.45") * "1.099" - "0.099" if c > "0.018" else c * "4.5"


# RGB, XYZ and luminance.

def rgb_to_xyz(i, rgb):
    return apply(RGB_TO_XYZ[i], rgb)


def xyz_to_rgb(e, i, xyz):
    rgb = apply(XYZ_TO_RGB[i], xyz)
    return rgb if e else unit(rgb)


def srgb_to_xyz(g, e, i, srgb):
    return rgb_to_xyz(i, decode3(g, e, srgb))


def xyz_to_srgb(g, e, i, xyz):
    return encode3(g, e, xyz_to_rgb(e, i, xyz))


def grey_xyz(i, Y):
    return [real(w) * Y for w in WHITE[i]]


def with_modified_Y(i, xyz, Y):
    if Y.value == 0:
        return [Real(0)] * 3
    if xyz[1].value == 0:
        return grey_xyz(i, Y)
    s = Y / xyz[1]
    return [xyz[0] * s, Y, xyz[2] * s]


def luminance(e, i, rgb):
    return dot(LUMINANCE[0], rgb) if e else dot(LUMINANCE[i], rgb).clamped()


# CIE 15:2004, 8.2: L*a*b* and L*u*v*, divided by 100.

def root(t):
    return power(t, "0.33333334") if t > "0.008856" else t * "7.787" + "0.13793103"


def inverse_root(s):
    t = cube(s)
    return t if t > "0.008856" else (s - "0.13793103") * "0.12841916"


def xyz_to_lab(i, xyz):
    fx, fy, fz = [root(c * w) for c, w in zip(xyz, INVERSE_WHITE[i])]
    return [(fy * "1.16" - "0.16").clamped(), (fx - fy) * 5, (fy - fz) * 2]


def lab_to_xyz(i, lab):
    fy = (lab[0] + "0.16") * "0.862069"
    fx = lab[1] * "0.2" + fy
    fz = fy - lab[2] * "0.5"
    return [inverse_root(s) * w for s, w in zip((fx, fy, fz), WHITE[i])]


def rgb_to_lab(i, rgb):
    return xyz_to_lab(i, rgb_to_xyz(i, rgb))


def lab_to_rgb(e, i, lab):
    return xyz_to_rgb(e, i, lab_to_xyz(i, lab))


def length(a, b):
    return square_root(a * a + b * b)


def polar(v):
    return [v[0], length(v[1], v[2]), arc_tangent(v[2], v[1])]


def saturation(L, C):
    s = L * L + C * C
    return C / square_root(s) if s > 0 else Real(0)


def distance_squared(a, b):
    d = [x - y for x, y in zip(a, b)]
    return dot(d, d)


def uniform_chromaticity(xyz):
    d = (xyz[0] + xyz[1] * 15) + xyz[2] * 3
    if d.equals(0):
        return None
    return xyz[0] * 4 * (1 / d), xyz[1] * 9 * (1 / d)


def uniform_white(i):
    return uniform_chromaticity([real(w) for w in WHITE[i]])


def xyz_to_luv(i, xyz):
    chromaticity = uniform_chromaticity(xyz)
    if chromaticity is None:
        return [Real(0)] * 3
    L = (root(xyz[1]) * "1.16" - "0.16").clamped()
    return [L] + [(c - w) * (L * 13) for c, w in zip(chromaticity, uniform_white(i))]


def luv_to_xyz(i, luv):
    if luv[0].value == 0:
        return [Real(0)] * 3
    L, u, v = [c * 100 for c in luv]
    t = (L + 16) / 116
    t3 = cube(t)
    Y = t3 if t3 > "0.008856" else (t - "0.13793103") / "7.787"
    un, vn = uniform_white(i)
    u = u * (1 / (L * 13)) + un
    v = v * (1 / (L * 13)) + vn
    X = real(-9) * Y * u / ((u - 4) * v - u * v)
    Z = (Y * 9 - v * 15 * Y - v * X) / (v * 3)
    return [X, Y, Z]


def lightness(Y):
    return (root(Y) * "1.16" - "0.16").clamped(0, None)


def inverse_lightness(L):
    return inverse_root((L + "0.16") / "1.16")


# Yxy, HSV.

def xyz_to_yxy(xyz):
    s = xyz[0] + xyz[1] + xyz[2]
    k = 1 / s if s > 0 else Real(0)
    return [xyz[1], xyz[0] * k, xyz[1] * k]


def yxy_to_xyz(yxy):
    Y, x, y = yxy
    k = Real(1) if y.value == 0 else Y / y
    return [x * k, Y, (1 - x - y) * k]


def rgb_to_hsv(rgb):
    r, g, b = rgb
    high = max(rgb, key=lambda c: c.value)
    d = high - min(rgb, key=lambda c: c.value)
    if high.value == 0 or d.value == 0:
        return [Real(0), Real(0), high]
    if r.value == high.value:
        h = (g - b) / (d * 6)
    elif g.value == high.value:
        h = (b - r) / (d * 6) + "0.33333334"
    else:
        h = (r - g) / (d * 6) + "0.6666667"
    h = h + 1 if h < 0 else h - 1 if h > 1 else h
    return [h, d / high, high]


def hsv_to_rgb(hsv):
    h, s, v = hsv
    if s.equals(0):
        return [v, v, v]
    h = h * 6
    if h.equals(6):
        h = Real(0)
    if h.bound > 0 and mpmath.floor(h.value - h.bound) != mpmath.floor(h.value + h.bound):
        raise Undecided
    sector = int(mpmath.floor(h.value))
    f = h - sector
    p, q, t = (1 - s) * v, (1 - s * f) * v, (1 - s * (1 - f)) * v
    return {0: [v, t, p], 1: [q, v, p], 2: [p, v, t], 3: [p, q, v], 4: [t, p, v]}.get(sector, [v, p, q])


# IPT and its kin (Ebner and Fairchild, CIC 1998).

def signed_power(c, exponent):
    if c.value == 0 and c.bound == 0:
        return Real(0)
    return power(c, exponent) if c > 0 else -power(-c, exponent)


def lms_to_ipt(lms):
    return apply(LMS_TO_IPT, [signed_power(c, "0.43") for c in lms])


def ipt_to_lms(ipt):
    return [signed_power(c, "2.325581") for c in apply(IPT_TO_LMS, ipt)]


def xyz_to_ipt(i, xyz):
    return lms_to_ipt(apply(XYZ_TO_LMS[i], xyz))


def ipt_to_xyz(i, ipt):
    return apply(LMS_TO_XYZ[i], ipt_to_lms(ipt))


def rgb_to_ipt(i, rgb):
    return lms_to_ipt(apply(product(XYZ_TO_LMS[i], RGB_TO_XYZ[i]), rgb))


def ipt_to_rgb(e, i, ipt):
    rgb = apply(product(XYZ_TO_RGB[i], LMS_TO_XYZ[i]), ipt_to_lms(ipt))
    return rgb if e else unit(rgb)


def ipt_saturation(ipt):
    c2 = ipt[1] * ipt[1] + ipt[2] * ipt[2]
    return square_root(c2) / square_root(ipt[0] * ipt[0] + c2) if c2 > 0 else Real(0)


def ipt_to_ich(ipt):
    return [ipt[0], length(ipt[1], ipt[2]), arc_tangent(ipt[1], ipt[2])]


def ich_to_ipt(ich):
    return [ich[0], ich[1] * sine(ich[2]), ich[1] * cosine(ich[2])]


# Display P3.

def p3_to_xyz(g, i, p3):
    return apply(P3_TO_XYZ[i], decode3(g, False, p3))


def xyz_to_p3(g, i, xyz):
    linear = apply(XYZ_TO_P3[i], xyz)
    # A negative value has no power: NaN, which the clamp turns into 0.
    return [Real(0) if g and c < 0 else encode(g, c).clamped() for c in linear]


def p3_luminance(i, linear):
    return dot(P3_TO_XYZ[i][1], linear).clamped()


# Adjustments.

def complementary(rgb):
    h, s, v = rgb_to_hsv(rgb)
    h = h + "0.5"
    return hsv_to_rgb([h - 1 if h > 1 else h, s, v])


def weights(luma, e, i):
    return [real(w) for w in (LUMA if luma else LUMINANCE[0 if e else i])]


def saturation_matrix(luma, e, i, s):
    """Laid out for row vectors: row k is what input channel k gives to each output."""
    a = [(1 - s) * w for w in weights(luma, e, i)]
    return [[a[row] + s if row == column else a[row] for column in range(3)] for row in range(3)]


def rotation(axis, c, s):
    one, nil = Real(1), Real(0)
    return {"x": [[one, nil, nil], [nil, c, -s], [nil, s, c]],
            "y": [[c, nil, s], [nil, one, nil], [-s, nil, c]],
            "z": [[c, -s, nil], [s, c, nil], [nil, nil, one]]}[axis]


def hue_rotation(luma, e, i, angle, keep_luminance):
    c, s = cosine(angle), sine(angle)
    if not keep_luminance:
        # Rodrigues about (1, 1, 1) / sqrt(3); a float quaternion gives each element within a few roundings.
        cv, sv = c.value, s.value / mpmath.sqrt(3)
        m = [[cv + (1 - cv) / 3, (1 - cv) / 3 - sv, (1 - cv) / 3 + sv]]
        m = [m[0], [m[0][2], m[0][0], m[0][1]], [m[0][1], m[0][2], m[0][0]]]
        return [[Real(x, 6 * HALF_ULP) for x in row] for row in m]
    quarter = real("0.78539816")
    tilt = real("-0.61547965")
    x = rotation("x", cosine(quarter), sine(quarter))
    y = rotation("y", cosine(tilt), sine(tilt))
    out = product(y, x)
    l = apply(out, weights(luma, e, i))
    assert l[2] > 0
    q = 1 / l[2]
    dx, dy = l[0] * q, l[1] * q
    one, nil = Real(1), Real(0)
    for m in ([[one, nil, nil], [nil, one, nil], [dx, dy, one]], rotation("z", c, s),
              [[one, nil, nil], [nil, one, nil], [-dx, -dy, one]], transposed(y), transposed(x)):
        out = product(m, out)
    return out


def yiq_hue_rotation(angle):
    c, s = cosine(angle), sine(angle)
    one, nil = Real(1), Real(0)
    to_yiq = [["0.299", "0.587", "0.114"], ["0.596", "-0.274", "-0.321"], ["0.211", "-0.523", "0.311"]]
    from_yiq = [[1, "0.956", "0.621"], [1, "-0.272", "-0.647"], [1, "-1.107", "1.705"]]
    turned = product([[one, nil, nil], [nil, c, s], [nil, -s, c]], [[real(x) for x in row] for row in to_yiq])
    return product(from_yiq, turned)


def highlights(a, b):
    """256 values before truncation, on the scale of 255."""
    z = (1 - a) * "11.7"
    k = real("1.442695") * z / b
    c = b / (1 / (exponential(-z) + 1) - "0.5")
    e = real("-5.115996") / logarithm(1 - b)
    levels = []
    for i in range(256):
        x = real(i) * "0.003921569"
        if i == 0:
            levels.append(Real(0))  # 0 to a positive power
            continue
        g = (1 / (power_of_two(k - x * k) + 1) - "0.5") * c + 1
        low, high = e.value - e.bound, e.value + e.bound
        spread = max(abs(x.value**low - x.value**e.value), abs(x.value**high - x.value**e.value))
        spread += x.bound * e.value * max(1, x.value ** (e.value - 1))
        p = Real(x.value**e.value, spread + 2 * HALF_ULP * x.value**e.value)
        levels.append((x * (1 - p) + g * p).clamped() * 255)
    return levels


def pouli(nonlinear, e, i, reference, target):
    if nonlinear:
        reference, target = decode3(False, e, reference), decode3(False, e, target)
    I1, P1, T1 = xyz_to_ipt(i, rgb_to_xyz(i, reference))
    I2, P2, T2 = xyz_to_ipt(i, rgb_to_xyz(i, target))
    C1, C2 = length(P1, T1), length(P2, T2)
    h = arc_tangent(P1, T1)
    scaled = C2 * I1 / I2
    chroma = scaled * (C1 * length(I2, scaled) / (scaled * length(I1, C1)))
    rgb = xyz_to_rgb(False, i, ipt_to_xyz(i, [I2, chroma * sine(h), chroma * cosine(h)]))
    return encode3(False, e, rgb) if nonlinear else rgb


def hable(A, B, C, D, x):
    return ((B + A * x) * x) / ((A * x + C) * x + D)


def insomniac_coefficients(black, toe, cross, shoulder, white):
    low, high = (cross - black) * (1 - toe), (white - cross) * (1 - shoulder)
    k = low / (high + low)
    m = white * (1 - shoulder) - cross
    return ([k * (1 - toe), -toe, -k * (1 - toe) * black, cross - (1 - toe) * black],
            [k * shoulder + (1 - k), shoulder, k * m - (1 - k) * cross, m])


def insomniac(curve, inverse, x):
    toe, shoulder = insomniac_coefficients(*curve)

    def forward(x):
        a, b, c, d = toe if curve[2] > x else shoulder
        return (a * x + c) / (b * x + d)

    if not inverse:
        return forward(x)
    a, b, c, d = toe if forward(curve[2]) > x else shoulder
    return (c - d * x) / (b * x - a)


def adaptation(source, destination):
    ratio = [d / s for d, s in zip(apply(BRADFORD, destination), apply(BRADFORD, source))]
    scale = [[r if row == column else Real(0) for column, r in enumerate(ratio)] for row in range(3)]
    return product(product(INVERSE_BRADFORD, scale), [[real(x) for x in row] for row in BRADFORD])
