// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/ByteTables.h"

#include <bit>
#include <cstddef>
#include <cstdint>

#include "QZ/Foundation/Color/Formulas/ToneCurves.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

namespace {

template <class Curve>
ByteTable Tabulate(Curve&& curve)
{
    ByteTable table{};
    for (std::size_t byte = 0; byte < 256; ++byte) {
        table.values[byte] = curve(static_cast<float>(byte) * kByteToUnit);
        const auto bits = std::bit_cast<std::uint32_t>(table.values[byte]);
        for (std::size_t i = 0; i < 4; ++i)
            table.planes[i][byte] = static_cast<unsigned char>(bits >> (8 * i));
    }
    return table;
}

}   // namespace

const ByteTable& UnitOfByte()
{
    static const ByteTable table = Tabulate([](float unit) { return unit; });
    return table;
}

const ByteTable& LinearOfSRGBByte()
{
    static const ByteTable table =
        Tabulate([](float unit) { return formula::NonlinearToLinear(false, unit); });
    return table;
}

const ByteTable& LinearOfGamma22Byte()
{
    static const ByteTable table =
        Tabulate([](float unit) { return formula::NonlinearToLinear(true, unit); });
    return table;
}

}   // namespace QZ::Foundation
