// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "tools/qz/io/Raster.h"

namespace QZ::Tool {

namespace {

// The Netpbm formats: P1 to P3 as text, P4 to P6 as bytes, for bitmaps, greys and colours, and P7 (PAM).
class Decoder {
public:
    Decoder(const Bytes& file, PictureBuilder& picture) : m_file(file), m_picture(picture) {}

    void Decode()
    {
        m_kind = m_file.at(1) - '0';
        m_position = 2;
        m_header.format = "PNM";
        if (m_kind == 7)
            ReadArbitraryHeader();
        else
            ReadPlainHeader();
        if (m_most < 1 || m_most > 65535)
            throw Defect("a PNM file with the impossible maximum " + std::to_string(m_most));
        m_header.bytesPerSample = m_most > 255 ? 2 : 1;
        m_header.bitDepth = 1;
        while ((1u << m_header.bitDepth) <= m_most)
            ++m_header.bitDepth;
        const std::uint64_t width = m_header.width;
        const std::uint64_t height = m_header.height;
        const auto samples = static_cast<std::size_t>(m_header.Samples());
        CheckLimits(m_picture.Limit(), width, height);
        CheckLength(samples);
        std::vector<unsigned char> row(width * m_header.BytesPerPixel());
        m_picture.Begin(m_header);
        for (std::uint64_t y = 0; y < height; ++y) {
            ReadRow(row, static_cast<std::size_t>(width) * samples);
            m_picture.Row(y, row.data());
        }
    }

private:
    static bool IsSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

    [[noreturn]] static void Truncated() { throw Defect("not a sound PNM file: it is truncated"); }

    unsigned char Next()
    {
        if (m_position >= m_file.size())
            Truncated();
        return m_file[m_position++];
    }

    void SkipSpace()
    {
        while (m_position < m_file.size()) {
            if (m_file[m_position] == '#')
                while (m_position < m_file.size() && m_file[m_position] != '\n')
                    ++m_position;
            else if (IsSpace(m_file[m_position]))
                ++m_position;
            else
                return;
        }
        Truncated();
    }

    std::string_view Word()
    {
        SkipSpace();
        const std::size_t start = m_position;
        while (m_position < m_file.size() && !IsSpace(m_file[m_position]) && m_file[m_position] != '#')
            ++m_position;
        return {reinterpret_cast<const char*>(m_file.data()) + start, m_position - start};
    }

    std::uint64_t Number()
    {
        const std::string_view word = Word();
        std::uint64_t value = 0;
        for (const char c : word) {
            if (c < '0' || c > '9' || value > 0xFFFF'FFFF)
                throw Defect("not a sound PNM file: '" + OneLine(word.substr(0, 20)) + "' is no number");
            value = 10 * value + static_cast<std::uint64_t>(c - '0');
        }
        return value;
    }

    void ReadPlainHeader()
    {
        m_header.model = m_kind == 3 || m_kind == 6 ? Model::RGB : Model::Grey;
        m_header.width = Number();
        m_header.height = Number();
        m_most = Bitmap() ? 1 : Number();
        if (m_kind >= 4 && !IsSpace(Next()))
            throw Defect("not a sound PNM file: its header does not end");
    }

    void ReadArbitraryHeader()
    {
        std::uint64_t depth = 0;
        for (std::string_view field = Word(); field != "ENDHDR"; field = Word()) {
            if (field == "WIDTH")
                m_header.width = Number();
            else if (field == "HEIGHT")
                m_header.height = Number();
            else if (field == "DEPTH")
                depth = Number();
            else if (field == "MAXVAL")
                m_most = Number();
            else if (field == "TUPLTYPE")
                (void)Word();   // the depth says as much
            else
                throw Defect("not a sound PNM file: unknown field '" + OneLine(field.substr(0, 20)) + "'");
        }
        if (depth < 1 || depth > 4)
            throw Defect("a PAM file of " + std::to_string(depth) + " channels", "convert it to PNG");
        m_header.model = depth <= 2 ? Model::Grey : Model::RGB;
        m_header.alpha = depth == 2 || depth == 4;
        (void)Next();   // the end of the line
    }

    [[nodiscard]] bool Bitmap() const { return m_kind == 1 || m_kind == 4; }
    [[nodiscard]] bool Text() const { return m_kind <= 3; }

    // A short file is refused before a large picture is allocated for it.
    void CheckLength(std::size_t samples) const
    {
        const std::uint64_t row = m_kind == 4 ? (m_header.width + 7) / 8
                                  : Text()    ? m_header.width * samples
                                              : m_header.width * m_header.BytesPerPixel();
        if ((m_file.size() - m_position) / row < m_header.height)
            Truncated();
    }

    void ReadRow(std::vector<unsigned char>& row, std::size_t count)
    {
        if (m_kind == 4)
            return ReadBits(row, count);
        for (std::size_t i = 0; i < count; ++i)
            Store(row, i, m_kind == 1 ? Digit() : Text() ? Number() : Binary());
    }

    void ReadBits(std::vector<unsigned char>& row, std::size_t count)
    {
        unsigned char bits = 0;
        for (std::size_t x = 0; x < count; ++x) {
            if (x % 8 == 0)
                bits = Next();
            row[x] = (bits >> (7 - x % 8) & 1) != 0 ? 0 : 255;   // 1 is black
        }
    }

    // The digits of a text bitmap need no space between them.
    std::uint64_t Digit()
    {
        SkipSpace();
        const unsigned char c = Next();
        if (c != '0' && c != '1')
            throw Defect("not a sound PNM file: a bitmap holds only 0 and 1");
        return c == '0' ? 1 : 0;   // 1 is black
    }

    std::uint64_t Binary()
    {
        const unsigned first = Next();
        return m_header.bytesPerSample == 2 ? first << 8 | Next() : first;
    }

    // A sample of 0 to the maximum, on the full scale of its bytes.
    void Store(std::vector<unsigned char>& row, std::size_t index, std::uint64_t value) const
    {
        if (value > m_most)
            throw Defect("not a sound PNM file: a sample above its maximum");
        const std::uint64_t full = m_header.bytesPerSample == 2 ? 65535 : 255;
        const auto scaled = static_cast<std::uint16_t>((value * full + m_most / 2) / m_most);
        if (m_header.bytesPerSample == 2)
            std::memcpy(row.data() + 2 * index, &scaled, 2);
        else
            row[index] = static_cast<unsigned char>(scaled);
    }

    const Bytes& m_file;
    PictureBuilder& m_picture;
    std::size_t m_position = 0;
    int m_kind = 0;
    std::uint64_t m_most = 0;
    RasterHeader m_header;
};

}   // namespace

void DecodePNM(const Bytes& file, PictureBuilder& picture)
{
    Decoder(file, picture).Decode();
}

}   // namespace QZ::Tool
