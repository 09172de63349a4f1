// SPDX-License-Identifier: MIT
#include "tests/Movie/BoxReader.h"

#include <fstream>
#include <iterator>
#include <set>

namespace QZ::Test {

namespace {
using Bytes = std::vector<unsigned char>;

const std::set<std::string> kContainers = {"moov", "trak", "edts", "mdia", "minf", "stbl",
                                           "dinf", "mvex", "moof", "traf", "udta", "meta",
                                           "ilst", "gmhd", "tapt", "wave", "tref"};

std::uint64_t Number(const Bytes& bytes, std::uint64_t position, std::size_t count)
{
    if (position + count > bytes.size())
        throw BoxError("a number beyond the end of its box");
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = value << 8 | bytes[position + i];
    return value;
}

std::vector<BoxNode> Boxes(const Bytes& file, std::uint64_t begin, std::uint64_t end)
{
    std::vector<BoxNode> nodes;
    while (begin < end) {
        if (end - begin < 8)
            throw BoxError("bytes that are no box at " + std::to_string(begin));
        std::uint64_t size = Number(file, begin, 4);
        BoxNode node;
        node.offset = begin;
        node.type.assign(reinterpret_cast<const char*>(file.data()) + begin + 4, 4);
        std::uint64_t header = 8;
        if (size == 1) {
            size = Number(file, begin + 8, 8);
            header = 16;
        }
        if (size < header || size > end - begin)
            throw BoxError("box " + node.type + " at " + std::to_string(begin) + " has size " +
                           std::to_string(size));
        node.bodyOffset = begin + header;
        node.bodySize = size - header;
        if (node.type != "mdat")
            node.body.assign(file.begin() + static_cast<std::ptrdiff_t>(node.bodyOffset),
                             file.begin() + static_cast<std::ptrdiff_t>(begin + size));
        if (kContainers.contains(node.type) && node.type != "tref")
            node.children = Boxes(file, node.bodyOffset, begin + size);
        nodes.push_back(std::move(node));
        begin += size;
    }
    return nodes;
}

/// The entries of a table behind version, flags and count; the box must end with the last of them.
std::vector<std::vector<std::uint64_t>> Table(const BoxNode& box, const std::vector<std::size_t>& fields)
{
    std::size_t width = 0;
    for (const std::size_t field : fields)
        width += field;
    const std::uint64_t count = box.U(4, 4);
    if (box.bodySize != 8 + count * width)
        throw BoxError(box.type + " has a size that its count does not explain");
    std::vector<std::vector<std::uint64_t>> rows;
    std::size_t position = 8;
    for (std::uint64_t i = 0; i < count; ++i) {
        std::vector<std::uint64_t> row;
        for (const std::size_t field : fields) {
            row.push_back(box.U(position, field));
            position += field;
        }
        rows.push_back(row);
    }
    return rows;
}

void ReadSizes(const BoxNode& table, TrackView& track)
{
    const BoxNode& box = table.Only("stsz");
    const std::uint64_t common = box.U(4, 4), count = box.U(8, 4);
    if (box.bodySize != 12 + (common ? 0 : 4 * count))
        throw BoxError("stsz has a size that its count does not explain");
    track.samples.resize(count);
    for (std::uint64_t i = 0; i < count; ++i)
        track.samples[i].size = common ? common : box.U(12 + 4 * i, 4);
}

void ReadTimes(const BoxNode& table, TrackView& track)
{
    std::size_t next = 0;
    std::int64_t time = 0;
    for (const auto& row : Table(table.Only("stts"), {4, 4})) {
        for (std::uint64_t i = 0; i < row[0]; ++i) {
            TrackSample& sample = track.samples.at(next++);
            sample.decode = sample.presentation = time;
            sample.duration = static_cast<std::int64_t>(row[1]);
            time += sample.duration;
        }
    }
    if (next != track.samples.size() || time != track.mediaDuration)
        throw BoxError("stts does not cover the samples or the media's duration");
    if (!table.Has("ctts"))
        return;
    next = 0;
    for (const auto& row : Table(table.Only("ctts"), {4, 4}))
        for (std::uint64_t i = 0; i < row[0]; ++i)
            track.samples.at(next++).presentation += static_cast<std::int64_t>(row[1]);
    if (next != track.samples.size())
        throw BoxError("ctts does not cover the samples");
}

void ReadSync(const BoxNode& table, TrackView& track)
{
    if (!table.Has("stss")) {
        for (TrackSample& sample : track.samples)
            sample.sync = true;
        return;
    }
    std::uint64_t last = 0;
    for (const auto& row : Table(table.Only("stss"), {4})) {
        if (row[0] <= last)
            throw BoxError("stss does not rise");
        last = row[0];
        track.samples.at(last - 1).sync = true;
    }
}

void ReadOffsets(const BoxNode& table, TrackView& track)
{
    const bool large = table.Has("co64");
    for (const auto& row :
         Table(table.Only(large ? "co64" : "stco"), {large ? std::size_t{8} : std::size_t{4}}))
        track.chunkOffsets.push_back(row[0]);
    const auto runs = Table(table.Only("stsc"), {4, 4, 4});
    std::size_t next = 0, run = 0;
    for (std::size_t chunk = 1; chunk <= track.chunkOffsets.size(); ++chunk) {
        if (run + 1 < runs.size() && runs[run + 1][0] == chunk)
            ++run;
        std::uint64_t offset = track.chunkOffsets[chunk - 1];
        for (std::uint64_t i = 0; i < runs.at(run)[1]; ++i) {
            TrackSample& sample = track.samples.at(next++);
            sample.offset = offset;
            offset += sample.size;
        }
    }
    if (next != track.samples.size())
        throw BoxError("stsc does not cover the samples");
}

void ReadEdits(const BoxNode& trak, TrackView& track)
{
    const BoxNode& box = trak.Only("edts").Only("elst");
    const std::size_t width = box.U(0, 1) == 1 ? 8 : 4;
    for (const auto& row : Table(box, {width, width, 4})) {
        const std::int64_t time = width == 4 ? static_cast<std::int32_t>(static_cast<std::uint32_t>(row[1]))
                                             : static_cast<std::int64_t>(row[1]);
        if (row[2] != 0x10000)
            throw BoxError("an edit of a rate other than 1");
        track.edits.push_back({static_cast<std::int64_t>(row[0]), time});
    }
}

TrackView ReadTrack(const BoxNode& trak)
{
    TrackView track;
    const BoxNode& header = trak.Only("tkhd");
    const std::size_t wide = header.U(0, 1) == 1 ? 8 : 4;
    track.id = static_cast<std::uint32_t>(header.U(4 + 2 * wide, 4));
    track.movieDuration = static_cast<std::int64_t>(header.U(4 + 2 * wide + 8, wide));
    std::size_t position = 4 + 2 * wide + 8 + wide + 16;
    for (int i = 0; i < 9; ++i, position += 4)
        track.matrix.push_back(header.I32(position));
    track.width = header.I32(position) / 65536.0;
    track.height = header.I32(position + 4) / 65536.0;
    if (header.bodySize != position + 8)
        throw BoxError("tkhd of a wrong size");
    ReadEdits(trak, track);
    const BoxNode& mdia = trak.Only("mdia");
    const BoxNode& media = mdia.Only("mdhd");
    const std::size_t mediaWide = media.U(0, 1) == 1 ? 8 : 4;
    track.timescale = static_cast<std::int64_t>(media.U(4 + 2 * mediaWide, 4));
    track.mediaDuration = static_cast<std::int64_t>(media.U(8 + 2 * mediaWide, mediaWide));
    const BoxNode& handler = mdia.Only("hdlr");
    track.handler.assign(handler.body.begin() + 8, handler.body.begin() + 12);
    const BoxNode& table = mdia.Only("minf").Only("stbl");
    const BoxNode& description = table.Only("stsd");
    if (description.U(4, 4) != 1)
        throw BoxError("other than one sample entry");
    track.entry = Boxes(description.body, 8, description.bodySize).at(0);
    track.format = track.entry.type;
    ReadSizes(table, track);
    ReadTimes(table, track);
    ReadSync(table, track);
    ReadOffsets(table, track);
    return track;
}

void ReadTags(const BoxNode& moov, MovieView& movie)
{
    if (!moov.Has("meta"))
        return;
    const BoxNode& meta = moov.Only("meta");
    for (const BoxNode& entry : Boxes(meta.Only("keys").body, 8, meta.Only("keys").bodySize))
        movie.tags.emplace_back(std::string(entry.body.begin(), entry.body.end()), "");
    if (movie.tags.size() != meta.Only("keys").U(4, 4))
        throw BoxError("keys has a count that is not its own");
    std::size_t next = 0;
    for (const BoxNode& item : meta.Only("ilst").children) {
        const BoxNode data = Boxes(item.body, 0, item.bodySize).at(0);
        if (data.type != "data" || data.U(0, 4) != 1)
            throw BoxError("a tag that is no text");
        movie.tags.at(next++).second.assign(data.body.begin() + 8, data.body.end());
    }
}

void CheckMedia(const MovieView& movie)
{
    const BoxNode& media = movie.boxes.back();
    std::set<std::pair<std::uint64_t, std::uint64_t>> ranges;
    for (const TrackView& track : movie.tracks)
        for (const TrackSample& sample : track.samples)
            if (!ranges.insert({sample.offset, sample.size}).second)
                throw BoxError("two samples at one place");
    std::uint64_t expected = media.bodyOffset;
    for (const auto& [offset, size] : ranges) {
        if (offset != expected)
            throw BoxError("a gap or an overlap in the media data at " + std::to_string(offset));
        expected += size;
    }
    if (expected != media.bodyOffset + media.bodySize)
        throw BoxError("media data behind the last sample");
}
}   // namespace

const BoxNode& BoxNode::Only(const std::string& childType) const
{
    const std::vector<const BoxNode*> found = All(childType);
    if (found.size() != 1)
        throw BoxError(type + " holds " + std::to_string(found.size()) + " boxes " + childType);
    return *found[0];
}

std::vector<const BoxNode*> BoxNode::All(const std::string& childType) const
{
    std::vector<const BoxNode*> found;
    for (const BoxNode& child : children)
        if (child.type == childType)
            found.push_back(&child);
    return found;
}

std::uint64_t BoxNode::U(std::size_t position, std::size_t bytes) const
{
    return Number(body, position, bytes);
}

std::int32_t BoxNode::I32(std::size_t position) const
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(U(position, 4)));
}

std::vector<std::string> MovieView::TopLevel() const
{
    std::vector<std::string> types;
    for (const BoxNode& box : boxes)
        types.push_back(box.type);
    return types;
}

const TrackView& MovieView::Track(const std::string& handler) const
{
    for (const TrackView& track : tracks)
        if (track.handler == handler)
            return track;
    throw BoxError("no track of " + handler);
}

std::vector<unsigned char> ReadBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<BoxNode> ReadBoxes(const std::string& path)
{
    const Bytes file = ReadBytes(path);
    return Boxes(file, 0, file.size());
}

MovieView ReadMovie(const std::string& path)
{
    MovieView movie;
    movie.boxes = ReadBoxes(path);
    if (movie.TopLevel() != std::vector<std::string>{"ftyp", "moov", "mdat"})
        throw BoxError(path + " is no ordinary movie with its index in front");
    const BoxNode& moov = movie.boxes[1];
    const BoxNode& header = moov.Only("mvhd");
    const std::size_t wide = header.U(0, 1) == 1 ? 8 : 4;
    movie.timescale = static_cast<std::int64_t>(header.U(4 + 2 * wide, 4));
    movie.duration = static_cast<std::int64_t>(header.U(8 + 2 * wide, wide));
    for (const BoxNode* trak : moov.All("trak"))
        movie.tracks.push_back(ReadTrack(*trak));
    ReadTags(moov, movie);
    CheckMedia(movie);
    return movie;
}

}   // namespace QZ::Test
