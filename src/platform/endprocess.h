// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// To be called when the event loop has ended and all is written: ends the process at once where taking the
/// toolkit down is nothing but work (it would read the whole font configuration only to let go of it).
/// Returns where that is not so; the caller then ends as usual.
void endProcess(int status);

} // namespace platform
