// SPDX-License-Identifier: MIT
#include "model/jsonnumbers.h"

#include <algorithm>

namespace model {

namespace {

/// The end of the digits at `at`.
char *passDigits(char *at, const char *end)
{
    while (at < end && *at >= '0' && *at <= '9')
        ++at;
    return at;
}

/// The end of the number that begins at `start`; `start` when it is none.
char *passNumber(char *start, const char *end)
{
    char *const whole = start + (*start == '-');
    char *at = passDigits(whole, end);
    if (at == whole || (*whole == '0' && at - whole > 1))
        return start;
    const auto passPart = [&](bool isSigned) {
        char *part = at + 1;
        if (isSigned && part < end && (*part == '+' || *part == '-'))
            ++part;
        at = passDigits(part, end);
        return at > part;
    };
    if (at < end && *at == '.' && !passPart(false))
        return start;
    if (at < end && (*at == 'e' || *at == 'E') && !passPart(true))
        return start;
    return at;
}

} // namespace

QByteArray withoutNumbers(QByteArrayView json)
{
    QByteArray text = json.toByteArray();
    char *const end = text.data() + text.size();
    bool isInString = false;
    for (char *at = text.data(); at < end; ++at) {
        if (*at == '"') {
            isInString = !isInString;
        } else if (isInString) {
            at += *at == '\\'; // whatever is escaped
        } else if (*at == '-' || (*at >= '0' && *at <= '9')) {
            char *const after = passNumber(at, end);
            if (after == at) {
                at = std::max(at, passDigits(at + 1, end) - 1); // the rest of it is no number either
                continue;
            }
            *at = '0';
            std::fill(at + 1, after, ' ');
            at = after - 1;
        }
    }
    return text;
}

} // namespace model
