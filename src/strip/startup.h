// SPDX-License-Identifier: MIT
#pragma once

class Config;

namespace strip {

/// Fills Config from the settings file, or sets up a first run when there is no usable one. A usable start
/// writes nothing.
void loadOrCreateSettings(Config &config);

} // namespace strip
