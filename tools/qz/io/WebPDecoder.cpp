// SPDX-License-Identifier: MIT
#include <webp/decode.h>
#include <webp/demux.h>

#include <memory>

#include "tools/qz/io/Orientation.h"
#include "tools/qz/io/Raster.h"

namespace QZ::Tool {

namespace {

struct DemuxerCloser {
    void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};

struct IteratorRelease {
    ~IteratorRelease() { WebPDemuxReleaseIterator(&iterator); }
    WebPIterator iterator = {};
};

// The content of the first chunk of that kind; empty for none.
std::vector<unsigned char> Chunk(const WebPDemuxer* demuxer, const char* kind)
{
    WebPChunkIterator iterator;
    std::vector<unsigned char> content;
    if (WebPDemuxGetChunk(demuxer, kind, 1, &iterator) != 0)
        content.assign(iterator.chunk.bytes, iterator.chunk.bytes + iterator.chunk.size);
    WebPDemuxReleaseChunkIterator(&iterator);
    return content;
}

}   // namespace

void DecodeWebP(const Bytes& file, PictureBuilder& picture)
{
    const WebPData data = {file.data(), file.size()};
    const std::unique_ptr<WebPDemuxer, DemuxerCloser> demuxer(WebPDemux(&data));
    if (demuxer == nullptr)
        throw Defect("not a sound WebP file, or a truncated one");
    if (WebPDemuxGetI(demuxer.get(), WEBP_FF_FRAME_COUNT) > 1)
        throw Defect("an animated WebP", "take one picture out of it");
    IteratorRelease frame;
    WebPBitstreamFeatures features;
    if (WebPDemuxGetFrame(demuxer.get(), 1, &frame.iterator) == 0 ||
        WebPGetFeatures(frame.iterator.fragment.bytes, frame.iterator.fragment.size, &features) !=
            VP8_STATUS_OK)
        throw Defect("not a sound WebP file: it holds no picture");

    RasterHeader header;
    header.format = "WebP";
    header.width = static_cast<std::uint64_t>(features.width);
    header.height = static_cast<std::uint64_t>(features.height);
    header.alpha = true;
    header.opaque = features.has_alpha == 0;
    header.profile = Chunk(demuxer.get(), "ICCP");
    header.orientation = ExifOrientation(Chunk(demuxer.get(), "EXIF"));
    const std::uint64_t height = header.height;
    const std::size_t rowBytes = 4 * header.width;
    picture.Begin(std::move(header));

    const auto rows = picture.Rows();
    if (WebPDecodeRGBAInto(frame.iterator.fragment.bytes, frame.iterator.fragment.size, rows.data(),
                           rows.size(), static_cast<int>(rowBytes)) == nullptr)
        throw Defect("not a sound WebP file: it is truncated or corrupt");
    for (std::uint64_t y = 0; y < height; ++y)
        picture.Row(y, rows.data() + y * rowBytes);
}

}   // namespace QZ::Tool
