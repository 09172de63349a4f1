// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader/Reader.h"

#include "QZ/Platform/MovieReader/PictureDecoder.h"
#include "QZ/Platform/MovieReader/Quiet.h"
#include "QZ/Platform/MovieReader/SoundReader.h"

namespace QZ::Platform::Movie {

namespace {

class Reader final : public MovieReader {
public:
    bool Open(const std::string& path, std::int64_t mostPixels, MovieReadError& error)
    {
        const Quiet quiet;
        if (!m_pictures.Open(path, mostPixels, error))
            return false;
        m_description = m_pictures.Description();
        const AVStream* sound = m_pictures.Source().Best(AVMEDIA_TYPE_AUDIO);
        if (!sound)
            return true;
        m_description.soundCodec = avcodec_get_name(sound->codecpar->codec_id);
        m_description.hasSound = PassesThrough(*sound->codecpar);
        return !m_description.hasSound || m_sound.Open(path, mostPixels, error);
    }

    const MovieDescription& Description() const override { return m_description; }

    std::optional<MoviePicture> NextPicture(MovieReadError& error) override
    {
        error = {};
        const Quiet quiet;
        return m_pictures.Next(error);
    }

    std::shared_ptr<SampleBuffer> NextSound(MovieReadError& error) override
    {
        error = {};
        const Quiet quiet;
        std::shared_ptr<SampleBuffer> sound = m_description.hasSound ? m_sound.Next(error) : nullptr;
        if (sound)
            error = {};   // of the packet behind it, which the next call meets again
        return sound;
    }

private:
    MovieDescription m_description;
    PictureDecoder m_pictures;
    SoundReader m_sound;
};

}   // namespace

std::unique_ptr<MovieReader> OpenMovie(const std::string& path, std::int64_t mostPixels,
                                       MovieReadError& error)
{
    error = {};
    auto reader = std::make_unique<Reader>();
    return reader->Open(path, mostPixels, error) ? std::move(reader) : nullptr;
}

}   // namespace QZ::Platform::Movie
