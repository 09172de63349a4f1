// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "QZ/Platform/MovieReader.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

/// A picture of a movie that was worked on.
struct WorkedPicture {
    Image image;
    Platform::Time time = Platform::TimeZero;
};

/// Decodes the pictures of a movie and works on them ahead of who asks for them, on a thread for each core,
/// and gives them in their order. A few pictures for each thread are in memory.
class PicturesAhead {
public:
    using Operation = std::function<void(Image&)>;

    /// \param name       of the movie, for failures.
    /// \param operation  called on several threads at a time, with a picture of its own each.
    PicturesAhead(Platform::MovieReader& movie, std::string name, Operation operation);
    /// Waits for the threads, not for the movie.
    ~PicturesAhead();
    PicturesAhead(const PicturesAhead&) = delete;
    PicturesAhead& operator=(const PicturesAhead&) = delete;

    /// Waits for the next picture.
    /// \return none at the movie's end. Throws what the operation threw, and Failure when the movie cannot be
    ///         read further.
    [[nodiscard]] std::optional<WorkedPicture> Next();

private:
    struct Slot {
        WorkedPicture picture;
        std::exception_ptr error;
    };

    void Work();
    [[nodiscard]] bool WaitForRoom();
    /// The next picture in its turn. False at the end.
    bool Decode(std::uint64_t& turn, Slot& slot);
    void Store(std::uint64_t turn, Slot slot);

    Platform::MovieReader& m_movie;
    const std::string m_name;
    const Operation m_operation;
    std::mutex m_decoding;   ///< held by who decodes
    std::uint64_t m_decoded = 0;

    std::mutex m_mutex;   ///< guards what follows
    std::condition_variable m_changed;
    std::map<std::uint64_t, Slot> m_done;
    std::uint64_t m_taken = 0;
    std::uint64_t m_claimed = 0;            ///< pictures that are under way, done or taken
    std::optional<std::uint64_t> m_count;   ///< pictures in all, once that is known
    bool m_stopping = false;
    std::uint64_t m_most = 0;
    std::vector<std::thread> m_threads;
};

}   // namespace QZ::Tool
