// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/VideoTrack.h"

#include <algorithm>
#include <limits>

#include "QZ/Platform/MovieWriter/SampleEntries.h"

namespace QZ::Platform::Movie {

namespace {
constexpr std::int32_t kEncoderTimescale = 1000000;

// How long the only picture of a movie is shown: a thirtieth of a second.
constexpr std::int32_t kPicturesPerSecond = 30;

/// Holds a picture's lock.
class Locked {
public:
    explicit Locked(PixelBuffer& buffer) : m_buffer(buffer) { m_buffer.Lock(); }
    ~Locked() { m_buffer.Unlock(); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

private:
    PixelBuffer& m_buffer;
};
}   // namespace

VideoTrack::VideoTrack(const ChannelSettings& settings, MovieFile& file, std::size_t track)
    : TrackWriter(file, track), m_settings(settings), m_video(std::get<VideoSettings>(settings.output))
{}

bool VideoTrack::Open()
{
    const PixelBufferAttributes& source = m_settings.source;
    if (source.width < 1 || source.height < 1)
        return Fail("a video input has no adaptor that says how large its pictures are");
    if (!m_converter.Open(source.width, source.height, m_video.width, m_video.height,
                          VideoEncoder::PixelFormat(m_video.codec)))
        return Fail("pictures cannot be converted to " + std::to_string(m_video.width) + " x " +
                    std::to_string(m_video.height) + " pixels");
    VideoEncoding encoding{.codec = m_video.codec,
                           .width = m_converter.CodedWidth(),
                           .height = m_converter.CodedHeight(),
                           .timescale = kEncoderTimescale,
                           .realTime = m_settings.realTime};
    if (m_video.compression) {
        encoding.averageBitRate = m_video.compression->averageBitRate;
        encoding.keyFrameInterval = m_video.compression->maxKeyFrameInterval;
    }
    if (!m_encoder.Open(encoding))
        return Fail(m_encoder.Reason());
    Track& track = TheTrack();
    track.width = m_video.width;
    track.height = m_video.height;
    const AffineTransform& transform = m_settings.transform;
    const double matrix[6] = {transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty};
    std::copy_n(matrix, 6, track.matrix);
    Describe({});
    return true;
}

void VideoTrack::Describe(std::span<const unsigned char> profile)
{
    TheTrack().sampleEntry = WriteVideoEntry(
        {m_encoder.SampleEntryType(), m_converter.CodedWidth(), m_converter.CodedHeight(), m_video.width,
         m_video.height, m_encoder.ConfigurationType(), m_encoder.Configuration(), profile});
}

bool VideoTrack::Write(const QueuedSample& sample)
{
    Track& track = TheTrack();
    const Moment moment = MomentOf(sample.time);
    const Moment& start = m_file.movie.sessionStart;
    const std::int64_t previous = track.contentEnd - track.lastDuration;
    const std::int32_t previousTimescale = track.timescale;
    const std::int64_t time = ExactTicks(track, moment, start);
    std::int64_t encoderTime = moment.In(kEncoderTimescale) - start.In(kEncoderTimescale);
    if (m_first) {
        m_first = false;
        if (const ICCProfile profile = sample.picture->Profile())
            Describe(*profile);
        track.contentStart = time;
        track.lastDuration = std::max(1, track.timescale / kPicturesPerSecond);
    } else {
        track.lastDuration = time - Scale(previous, track.timescale, previousTimescale);
        encoderTime = std::max(encoderTime, m_lastEncoderTime + 1);
    }
    track.contentEnd = time + track.lastDuration;
    m_lastEncoderTime = encoderTime;
    m_moments[encoderTime] = moment;
    return Encode(*sample.picture, encoderTime);
}

bool VideoTrack::Encode(PixelBuffer& picture, std::int64_t encoderTime)
{
    const Locked lock(picture);
    const unsigned char* base = picture.BaseAddress();
    if (!base || picture.BytesPerRow() > std::numeric_limits<std::int32_t>::max())
        return Fail("a picture's memory cannot be read");
    AVFrame* converted = m_converter.Convert(base, static_cast<int>(picture.BytesPerRow()));
    if (!converted)
        return Fail("no memory for a converted picture");
    return m_encoder.Encode(converted, encoderTime, [this](EncodedSample encoded) {
        Add(std::move(encoded));
    }) || Fail(m_encoder.Reason());
}

void VideoTrack::Add(EncodedSample encoded)
{
    Track& track = TheTrack();
    const auto moment = m_moments.find(encoded.presentationTime);
    if (moment == m_moments.end())
        return;
    Sample sample;
    sample.presentationTime = moment->second.In(track.timescale);
    // Any rising times of decoding do that lie before those of presentation.
    const std::int64_t ahead =
        Scale(encoded.presentationTime - encoded.decodeTime, track.timescale, kEncoderTimescale);
    sample.decodeTime = sample.presentationTime - ahead;
    if (!track.samples.empty())
        sample.decodeTime = std::max(sample.decodeTime, track.samples.back().decodeTime + 1);
    sample.size = static_cast<std::uint32_t>(encoded.bytes.size());
    sample.sync = encoded.sync;
    m_moments.erase(moment);
    m_file.Add(m_index, sample, std::move(encoded.bytes));
}

bool VideoTrack::Finish()
{
    if (m_first)
        return true;
    return m_encoder.Encode(nullptr, 0, [this](EncodedSample encoded) { Add(std::move(encoded)); }) ||
           Fail(m_encoder.Reason());
}

}   // namespace QZ::Platform::Movie
