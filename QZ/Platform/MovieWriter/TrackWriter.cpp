// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/TrackWriter.h"

#include "QZ/Platform/MovieWriter/PassThroughTrack.h"
#include "QZ/Platform/MovieWriter/SoundTrack.h"
#include "QZ/Platform/MovieWriter/VideoTrack.h"

namespace QZ::Platform::Movie {

namespace {
void Refine(Track& track, std::int32_t timescale)
{
    if (track.timescale % timescale == 0)
        return;
    if (const std::optional<std::int32_t> common = CommonTimescale(track.timescale, timescale))
        track.Refine(*common);
}
}   // namespace

std::int64_t ExactTicks(Track& track, const Moment& moment, const Moment& sessionStart)
{
    if (track.timescale <= 0) {
        track.timescale = moment.timescale;
        Refine(track, sessionStart.timescale);
    }
    Refine(track, moment.timescale);
    return moment.In(track.timescale);
}

std::unique_ptr<TrackWriter> TrackWriter::Make(const ChannelSettings& settings, MovieFile& file,
                                               std::size_t track)
{
    if (settings.type == MediaType::Video)
        return std::make_unique<VideoTrack>(settings, file, track);
    if (std::holds_alternative<AudioSettings>(settings.output))
        return std::make_unique<SoundTrack>(std::get<AudioSettings>(settings.output), file, track);
    return std::make_unique<PassThroughTrack>(file, track);
}

}   // namespace QZ::Platform::Movie
