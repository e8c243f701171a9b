// The process's one language resource library.
#pragma once

namespace uinfo {

/// Releases the library if it has been loaded; the next request for a local name loads it again.
void releaseLanguageResources();

} // namespace uinfo
