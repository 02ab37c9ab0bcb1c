#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// What the drivers of engines share.
namespace tolvane::Benchmarks {

using Milliseconds = std::chrono::duration<double, std::milli>;
using Words = std::vector<std::string>;

/// Runs a program in a folder, with nothing to read and nobody to hear it.
/// @param words the path of the program and its arguments. @return whether it ended well.
bool runBare(Words words, const std::filesystem::path& folder);

/// @param folder emptied before.
/// @return milliseconds; not a number when the run fails.
double timed(const std::filesystem::path& folder, const std::function<bool()>& run);

/// Takes every way in turn in each round, each as often first as the others, and prints a line a
/// round with the time of each. One more round, at the start, warms the caches.
void timeInTurn(int rounds,
                const std::filesystem::path& folder,
                const std::vector<std::function<bool()>>& ways);

}  // namespace tolvane::Benchmarks
