# SPDX-License-Identifier: MIT
"""Real numbers that know how far single-precision arithmetic may stray from them.

A Real is the value that exact arithmetic gives and a bound on the error of the same steps done in floats, each
rounded once: half a unit in the last place for +, -, *, /, the square root and powers, one unit for the other
elementary functions. Bounds of operands are carried through each step. A comparison that the bound leaves
undecided raises Undecided: such an input is no test of anything and its row is left out.
"""
import struct

from mpmath import mp, mpf
import mpmath

mp.dps = 40
HALF_ULP = mpf(2) ** -24
SMALLEST = mpf(2) ** -150  # half the spacing of the subnormals


class Undecided(Exception):
    """A comparison, or a domain, that rounding decides."""


def to_float(x):
    """The float nearest to x, as an exact number."""
    return mpf(struct.unpack("f", struct.pack("f", float(x)))[0])


class Real:
    def __init__(self, value, bound=0):
        self.value = mpf(value)
        self.bound = mpf(bound)

    def __repr__(self):
        return "%s +- %s" % (mpmath.nstr(self.value, 12), mpmath.nstr(self.bound, 2))

    def __add__(self, other):
        other = real(other)
        return _rounded(self.value + other.value, self.bound + other.bound)

    def __sub__(self, other):
        return self + -real(other)

    def __rsub__(self, other):
        return real(other) - self

    def __neg__(self):
        return Real(-self.value, self.bound)

    def __mul__(self, other):
        other = real(other)
        bound = abs(self.value) * other.bound + abs(other.value) * self.bound + self.bound * other.bound
        return _rounded(self.value * other.value, bound)

    def __truediv__(self, other):
        other = real(other)
        least = abs(other.value) - other.bound
        if least <= 0:
            raise Undecided
        quotient = self.value / other.value
        return _rounded(quotient, (self.bound + abs(quotient) * other.bound) / least)

    def __rtruediv__(self, other):
        return real(other) / self

    __radd__ = __add__
    __rmul__ = __mul__

    def __gt__(self, other):
        difference = self.value - real(other).value
        bound = self.bound + real(other).bound
        if bound > 0 and abs(difference) <= bound:
            raise Undecided
        return difference > 0

    def __lt__(self, other):
        return real(other) > self

    def equals(self, other):
        difference = self.value - real(other).value
        bound = self.bound + real(other).bound
        if bound > 0 and abs(difference) <= bound:
            raise Undecided
        return difference == 0

    def clamped(self, low=0, high=1):
        """A clamp never moves two numbers apart, so that the bound holds."""
        value = self.value if low is None else max(mpf(low), self.value)
        return Real(value if high is None else min(mpf(high), value), self.bound)


def real(x):
    """A Real as it is, and a number or its decimal digits as the float nearest to it."""
    return x if isinstance(x, Real) else Real(to_float(mpf(x)))


def _rounded(value, bound, halves=1):
    if bound == 0 and halves == 1 and to_float(value) == value:
        return Real(value)
    return Real(value, bound + halves * ((abs(value) + bound) * HALF_ULP + SMALLEST))


def _elementary(function, x, halves=2):
    """A function that rises or falls throughout x +- bound, within so many halves of a unit in the last place."""
    value = function(x.value)
    ends = [function(x.value - x.bound), function(x.value + x.bound)] if x.bound > 0 else []
    spread = max([abs(end - value) for end in ends], default=mpf(0))
    return _rounded(value, spread, halves)


def power(x, exponent):
    if x.value - x.bound < 0 or (x.value - x.bound == 0 and x.bound > 0):
        raise Undecided
    if x.value == 0:
        return Real(0)
    exponent = real(exponent)
    assert exponent.bound == 0
    return _elementary(lambda v: v**exponent.value, x, halves=1)


def cube(x):
    return _elementary(lambda v: v**3, x, halves=1)


def square_root(x):
    low = max(mpf(0), x.value - x.bound)
    value = mpmath.sqrt(max(mpf(0), x.value))
    spread = max(abs(mpmath.sqrt(low) - value), abs(mpmath.sqrt(x.value + x.bound) - value)) if x.bound else 0
    return _rounded(value, spread)


def sine(x):
    return _rounded(mpmath.sin(x.value), x.bound, halves=2)  # a slope of at most 1


def cosine(x):
    return _rounded(mpmath.cos(x.value), x.bound, halves=2)


def exponential(x):
    return _elementary(mpmath.exp, x)


def power_of_two(x):
    return _elementary(lambda v: mpf(2) ** v, x)


def logarithm(x):
    if x.value - x.bound <= 0:
        raise Undecided
    return _elementary(mpmath.log, x)


def arc_tangent(y, x):
    if y.value == 0 and y.bound == 0 and x.value > 0 and x.bound == 0:
        return Real(0)
    distance = mpmath.sqrt(x.value**2 + y.value**2) - x.bound - y.bound
    if distance <= 0 or (x.value - x.bound < 0 and y.bound > 0 and abs(y.value) <= y.bound):
        raise Undecided
    return _rounded(mpmath.atan2(y.value, x.value), (x.bound + y.bound) / distance, halves=2)


def dot(a, b):
    return real(a[0]) * b[0] + real(a[1]) * b[1] + real(a[2]) * b[2]


def apply(matrix, v):
    """Matrix times column."""
    return [dot(row, v) for row in matrix]


def product(a, b):
    """Matrix product."""
    return [[dot(row, column) for column in zip(*b)] for row in a]


def transposed(m):
    return [list(column) for column in zip(*m)]
