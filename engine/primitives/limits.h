#pragma once

#include <cstddef>
#include <cstdint>

/// The safety limits that hold for every job. Sizes are in bytes, areas in pixels.
namespace tolvane::Limits {

inline constexpr std::uint64_t maxInputBytes =
    268'435'456;  // 256 MiB; the smallest input is 1 byte
inline constexpr std::size_t maxInputFiles = 100;

inline constexpr int maxPages = 500;         // of one input PDF, and of a merged one
inline constexpr int maxPagesPerJob = 1000;  // of every PDF job that is not a merge

inline constexpr int maxImageSide = 16'384;
inline constexpr int minRequestedSide = 16;
inline constexpr double maxImageArea = 80'000'000;
inline constexpr double maxCombinedImageArea = 40'000'000;
inline constexpr double maxRenderedArea = 40'000'000;

inline constexpr std::int64_t maxOutputBytes = 1'073'741'824;  // of one job
inline constexpr int maxNameAttempts = 10'000;

inline constexpr int maxArchiveEntries = 10'000;
inline constexpr std::int64_t maxExpandedBytes = 536'870'912;  // of one archive: 512 MiB

inline constexpr std::size_t headerSample = 512;
inline constexpr std::size_t textSample = 2'097'152;
inline constexpr std::uint64_t maxClippingBytes = 16'777'216;

}  // namespace tolvane::Limits
