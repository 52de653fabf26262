// SPDX-License-Identifier: MIT
#include "widgets/spring.h"

#include <cmath>
#include <numbers>

namespace widgets {

namespace {

constexpr double response = 0.15; // seconds
constexpr double damping = 0.85;
constexpr double omega = 2 * std::numbers::pi / response;
const double dampedOmega = omega * std::sqrt(1 - damping * damping);

} // namespace

void Spring::start(double target, double now)
{
    const double from = position(now);
    m_startSpeed = speed(now);
    m_from = from;
    m_target = target;
    m_startTime = now;
}

double Spring::position(double now) const
{
    if (isSettled(now))
        return m_target;
    const double t = now - m_startTime;
    const double offset = m_from - m_target;
    const double sine = (m_startSpeed + damping * omega * offset) / dampedOmega;
    return m_target
        + std::exp(-damping * omega * t)
        * (offset * std::cos(dampedOmega * t) + sine * std::sin(dampedOmega * t));
}

double Spring::speed(double now) const
{
    if (isSettled(now))
        return 0;
    const double t = now - m_startTime;
    const double offset = m_from - m_target;
    const double sine = (m_startSpeed + damping * omega * offset) / dampedOmega;
    const double c = std::cos(dampedOmega * t);
    const double s = std::sin(dampedOmega * t);
    return std::exp(-damping * omega * t)
        * (-damping * omega * (offset * c + sine * s) + dampedOmega * (sine * c - offset * s));
}

} // namespace widgets
