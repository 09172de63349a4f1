// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/ByteTables.h"

#include <cstddef>

#include "QZ/Foundation/Color/Formulas/ToneCurves.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

namespace {

template <class Curve>
ByteTable Tabulate(Curve&& curve)
{
    ByteTable table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte)
        table[byte] = curve(static_cast<float>(byte) * kByteToUnit);
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
