// SPDX-License-Identifier: MIT
#include "tools/qz/io/ImageReader.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "tools/qz/Failure.h"
#include "tools/qz/io/InputFile.h"
#include "tools/qz/io/Raster.h"

namespace QZ::Tool {

namespace {

using Head = std::span<const unsigned char>;

bool StartsWith(Head head, std::string_view signature, std::size_t offset = 0)
{
    return head.size() >= offset + signature.size() &&
           std::equal(signature.begin(), signature.end(), head.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
}

// Classic or big, of either byte order.
bool IsTIFF(Head head)
{
    using namespace std::string_view_literals;
    return StartsWith(head, "II*\0"sv) || StartsWith(head, "MM\0*"sv) || StartsWith(head, "II+\0"sv) ||
           StartsWith(head, "MM\0+"sv);
}

bool IsPNM(Head head)
{
    return head.size() > 2 && head[0] == 'P' && head[1] >= '1' && head[1] <= '7' &&
           (head[2] == '#' || head[2] == ' ' || (head[2] >= '\t' && head[2] <= '\r'));
}

// QuickTime and its descendants, Matroska.
bool IsMovie(Head head)
{
    return StartsWith(head, "ftyp", 4) || StartsWith(head, "moov", 4) || StartsWith(head, "\x1A\x45\xDF\xA3");
}

struct Format {
    bool (*recognises)(Head head);
    void (*decode)(const Bytes& file, PictureBuilder& picture);
};

constexpr std::array kFormats = {
    Format{[](Head head) { return StartsWith(head, "\x89PNG\r\n\x1a\n"); }, DecodePNG},
    Format{[](Head head) { return StartsWith(head, "\xFF\xD8\xFF"); }, DecodeJPEG},
    Format{[](Head head) { return StartsWith(head, "RIFF") && StartsWith(head, "WEBP", 8); }, DecodeWebP},
    Format{IsTIFF, DecodeTIFF},
    Format{IsPNM, DecodePNM},
};

const Format& FindFormat(Head head)
{
    if (head.empty())
        throw Defect("the file is empty");
    if (IsMovie(head))
        throw Defect("a movie, not a picture", "name OUT something.mov, where the command takes movies");
    const auto found =
        std::find_if(kFormats.begin(), kFormats.end(), [&](const Format& f) { return f.recognises(head); });
    if (found == kFormats.end())
        throw Defect("not a picture that qz reads", "convert it to PNG, JPEG, WebP, TIFF or PNM");
    return *found;
}

}   // namespace

Image DecodeImage(const std::vector<unsigned char>& file, const Limits& limits)
{
    PictureBuilder picture(limits);
    FindFormat(Head(file).first(std::min(file.size(), kHeadBytes))).decode(file, picture);
    return picture.Finish();
}

Image ReadImage(const std::string& path, const Context& context)
{
    context.Progress("reading " + InputName(path));
    try {
        const Image image =
            DecodeImage(ReadInput(path, context.limits, [](Head head) { FindFormat(head); }), context.limits);
        for (const std::string& remark : image.source.remarks)
            context.Say(InputName(path) + ": " + remark);
        return image;
    } catch (const Defect& defect) {
        throw Failure(Status::Malformed, InputName(path), defect.what(), defect.remedy);
    }
}

}   // namespace QZ::Tool
