#pragma once

/// The program's version, as the build names it.
inline constexpr char AppVersion[] = KORVANE_VERSION;
