// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Export.h"

namespace Notification {

/// The receivers of one kind of notification, for the whole process; the host's code fills and reads the
/// list.
template <class T>
class INotifications {
public:
    static std::vector<T*> Receivers;
};

/// Receives what the host has to say about animations: a base for the host's own receivers.
class QZ_API IAnimationNotification {
public:
    virtual ~IAnimationNotification();
};

template <>
QZ_API std::vector<IAnimationNotification*> INotifications<IAnimationNotification>::Receivers;

}   // namespace Notification

namespace Animation {

/// Something that moves with time. The driver calls only Tick and the destructor; the rest is the host's.
class QZ_API IAnimationEvent {
public:
    virtual ~IAnimationEvent();

    /// \name For the host, which calls them as it likes; they do nothing here.
    virtual void Begin();
    virtual void Pause();
    virtual void Resume();
    virtual void End();

    /// Called once a frame. \param currentTime  seconds since 2001-01-01 00:00 UTC, the same for all events of a frame
    virtual void Tick(const double* currentTime) = 0;

    float m_firstTiming = 0.0f;    ///< what the host's events take it for, such as a delay in seconds
    float m_secondTiming = 0.0f;   ///< likewise, such as a duration in seconds
};

/// Ticks every active event once a frame, and destroys stopped ones after the frame, never during it.
///
/// For one thread. The driver takes ownership of an event when it is stopped; its destructor destroys no
/// event.
class QZ_API CAnimation {
public:
    CAnimation() = default;
    ~CAnimation() = default;   // not virtual: no more than the arrays goes with the driver
    CAnimation(const CAnimation&) = delete;
    CAnimation& operator=(const CAnimation&) = delete;

    /// The host's one driver; null until the host sets it.
    static CAnimation* Instance;

    /// Makes an event active, behind those that are. Events begun during a tick have their first tick in the
    /// same frame.
    void BeginAnimationEvent(IAnimationEvent* event);
    /// The same, and sets the event's second timing.
    void BeginAnimationEvent(IAnimationEvent* event, float secondTiming);
    /// The same, and sets both timings.
    void BeginAnimationEvent(IAnimationEvent* event, float firstTiming, float secondTiming);

    /// Has an event removed and destroyed at the next flush; until then it stays active, and one that comes
    /// later in the order is still ticked in this frame. It must be active exactly once, and be stopped once.
    void StopAnimationEvent(IAnimationEvent* event);

    /// One frame: reads the clock, ticks the active events in the order in which they were begun, and
    /// flushes.
    virtual void Animate();

    /// Removes and destroys the stopped events, in the order in which they were stopped. For each, every
    /// entry of it goes, but the list becomes just one shorter.
    void FlushRemovedAnimationEvents();

    double currentTime = 0.0;   ///< of the latest frame: seconds since 2001-01-01 00:00 UTC
    std::vector<IAnimationEvent*> activeEvents;
    std::vector<IAnimationEvent*> removedEvents;   ///< stopped since the latest flush
};

}   // namespace Animation
