// SPDX-License-Identifier: MIT
#include "tools/qz/movie/PicturesAhead.h"

#include <algorithm>
#include <utility>

#include "tools/qz/movie/MovieFailure.h"
#include "tools/qz/movie/Pixels.h"

namespace QZ::Tool {

namespace {
// Each thread works on one picture while another that it has done waits.
constexpr unsigned kPicturesAThread = 2;
constexpr unsigned kMostThreads = 16;

Image ImageOf(Platform::PixelBuffer& pixels)
{
    Image image;
    image.width = pixels.Width();
    image.height = pixels.Height();
    image.pixels.resize(4 * image.Count());
    const std::size_t row = 4 * static_cast<std::size_t>(image.width);
    for (int y = 0; y < image.height; ++y)
        SwapRedAndBlue(pixels.BaseAddress() + static_cast<std::uint64_t>(y) * pixels.BytesPerRow(),
                       image.width, image.pixels.data() + static_cast<std::size_t>(y) * row);
    return image;
}
}   // namespace

PicturesAhead::PicturesAhead(Platform::MovieReader& movie, std::string name, Operation operation)
    : m_movie(movie), m_name(std::move(name)), m_operation(std::move(operation))
{
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads);
    m_most = threads * kPicturesAThread;
    for (unsigned i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { Work(); });
}

PicturesAhead::~PicturesAhead()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

bool PicturesAhead::WaitForRoom()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_stopping || m_count || m_claimed < m_taken + m_most; });
    if (m_stopping || m_count)
        return false;
    ++m_claimed;
    return true;
}

bool PicturesAhead::Decode(std::uint64_t& turn, Slot& slot)
{
    const std::lock_guard decoding(m_decoding);
    turn = m_decoded++;
    Platform::MovieReadError error;
    const std::optional<Platform::MoviePicture> picture = m_movie.NextPicture(error);
    if (picture) {
        slot.picture = {ImageOf(*picture->pixels), picture->time};
        return true;
    }
    const std::lock_guard lock(m_mutex);
    if (!m_count) {
        const bool failed = error.kind != Platform::MovieReadError::Kind::None;
        if (failed)
            m_done[turn].error = std::make_exception_ptr(MovieFailure(error, m_name));
        m_count = turn + (failed ? 1 : 0);
    }
    m_changed.notify_all();
    return false;
}

void PicturesAhead::Store(std::uint64_t turn, Slot slot)
{
    {
        const std::lock_guard lock(m_mutex);
        m_done[turn] = std::move(slot);
    }
    m_changed.notify_all();
}

void PicturesAhead::Work()
{
    while (WaitForRoom()) {
        std::uint64_t turn = 0;
        Slot slot;
        bool decoded = true;
        try {
            decoded = Decode(turn, slot);
            if (decoded)
                m_operation(slot.picture.image);
        } catch (...) {
            slot.error = std::current_exception();
        }
        if (!decoded)
            return;
        Store(turn, std::move(slot));
    }
}

std::optional<WorkedPicture> PicturesAhead::Next()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_done.contains(m_taken) || (m_count && m_taken >= *m_count); });
    if (!m_done.contains(m_taken))
        return std::nullopt;
    Slot slot = std::move(m_done.extract(m_taken).mapped());
    ++m_taken;
    lock.unlock();
    m_changed.notify_all();
    if (slot.error)
        std::rethrow_exception(slot.error);
    return std::move(slot.picture);
}

}   // namespace QZ::Tool
