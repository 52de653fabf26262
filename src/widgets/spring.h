// SPDX-License-Identifier: MIT
#pragma once

namespace widgets {

/// A damped spring that carries one value to a target. Time is the caller's: seconds of any monotonic clock.
class Spring
{
public:
    explicit Spring(double value)
        : m_from(value)
        , m_target(value)
    {
    }

    /// Heads for `target` from where the spring is at `now`, with the speed that it has then.
    void start(double target, double now);
    double target() const { return m_target; }
    double position(double now) const;
    /// In units of the value per second.
    double speed(double now) const;
    bool isSettled(double now) const { return now - m_startTime >= duration; }

    static constexpr double duration = 0.3; // seconds; what is left of the swing then is below a pixel

private:
    double m_from;
    double m_target;
    double m_startSpeed = 0;
    double m_startTime = -duration;
};

} // namespace widgets
