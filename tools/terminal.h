#pragma once

namespace helpbuild {

/// True when standard error is shown to a person, so that a progress line makes sense.
bool ErrorStreamIsTerminal();

} // namespace helpbuild
