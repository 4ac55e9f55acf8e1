#pragma once

/// Bounds in time hold for the optimised program. One for the sanitizers, or without optimisation
/// for its line coverage, is given that many times as long.
#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
inline constexpr int Slower = 10;
#else
inline constexpr int Slower = 1;
#endif
