// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "QZ/Export.h"

namespace QZ::Platform {

/// Runs functions on threads of the library's own, which come when needed and go when idle for long.
///
/// What was queued runs even when every reference to the queue is gone. A function that throws ends the
/// process.
class QZ_API DispatchQueue {
public:
    virtual ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    /// A queue that runs one function at a time, in the order in which they came.
    /// \param label  names the queue to people who look at it, such as "org.example.videoRecorder".
    [[nodiscard]] static std::shared_ptr<DispatchQueue> Serial(std::string label);
    /// The queue that runs every function as soon as it comes, side by side with the others. A function may
    /// wait for another: there is a thread for each.
    [[nodiscard]] static std::shared_ptr<DispatchQueue> Global();

    /// Queues a function and returns. From any thread.
    virtual void Async(std::function<void()> function) = 0;
    /// Queues a function and waits until it has run. On a serial queue, never from a function of its own: it
    /// would wait for itself.
    virtual void Sync(const std::function<void()>& function) = 0;

    [[nodiscard]] virtual const std::string& Label() const = 0;

protected:
    DispatchQueue() = default;
};

}   // namespace QZ::Platform
