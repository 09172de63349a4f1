// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/CAnimation.h"

#include <cstddef>

#include "QZ/Platform/Clock.h"

namespace Notification {

IAnimationNotification::~IAnimationNotification() = default;

template <>
std::vector<IAnimationNotification*> INotifications<IAnimationNotification>::Receivers{};

}   // namespace Notification

namespace Animation {

namespace {

/// Closes the gaps that the entries of `event` leave, and shortens the list by one: after two entries the
/// last one stays twice.
void Remove(std::vector<IAnimationEvent*>& events, const IAnimationEvent* event)
{
    std::size_t kept = 0;
    for (IAnimationEvent* other : events)
        if (other != event)
            events[kept++] = other;
    if (!events.empty())
        events.pop_back();
}

}   // namespace

CAnimation* CAnimation::Instance = nullptr;

IAnimationEvent::~IAnimationEvent() = default;
void IAnimationEvent::Begin()
{}
void IAnimationEvent::Pause()
{}
void IAnimationEvent::Resume()
{}
void IAnimationEvent::End()
{}

void CAnimation::BeginAnimationEvent(IAnimationEvent* event)
{
    activeEvents.push_back(event);
}

void CAnimation::BeginAnimationEvent(IAnimationEvent* event, float secondTiming)
{
    event->m_secondTiming = secondTiming;
    activeEvents.push_back(event);
}

void CAnimation::BeginAnimationEvent(IAnimationEvent* event, float firstTiming, float secondTiming)
{
    event->m_firstTiming = firstTiming;
    event->m_secondTiming = secondTiming;
    activeEvents.push_back(event);
}

void CAnimation::StopAnimationEvent(IAnimationEvent* event)
{
    removedEvents.push_back(event);
}

void CAnimation::Animate()
{
    currentTime = QZ::Platform::Clock::SecondsSinceReferenceDate();
    for (std::size_t i = 0; i < activeEvents.size(); ++i)   // by position: a tick may begin events
        activeEvents[i]->Tick(&currentTime);
    FlushRemovedAnimationEvents();
}

void CAnimation::FlushRemovedAnimationEvents()
{
    for (std::size_t i = 0; i < removedEvents.size(); ++i) {   // by position: a destructor may stop events
        IAnimationEvent* event = removedEvents[i];
        Remove(activeEvents, event);
        delete event;
    }
    removedEvents.clear();
}

}   // namespace Animation
