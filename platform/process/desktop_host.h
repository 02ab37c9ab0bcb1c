#pragma once

#include <filesystem>
#include <vector>

#include "platform/process/activation.h"

/// The desktop host of the session, as it is found on the session bus.
namespace tolvane::DesktopHost {

inline constexpr const char* name = "app.tolvane.Desktop";
inline constexpr const char* path = "/app/tolvane/Desktop";
inline constexpr const char* interfaceName = "org.freedesktop.Application";
/// The host's own word for: with what is selected. Started without a word it only takes its place
/// in the tray.
inline constexpr const char* showWord = "--show";
/// Keys of the platform data of its calls (freedesktop.org, "D-Bus Activation" of desktop entries).
inline constexpr const char* startupIdKey = "desktop-startup-id";
inline constexpr const char* activationTokenKey = "activation-token";

/// Hands files over to it; does not wait until it shows them. May take some milliseconds on the
/// first call, and less than a second when the session bus is stuck.
/// @param files absolute; none: it shows what is selected in the file manager.
/// @param activation by which it may come to the front.
/// @return false when none is running.
[[nodiscard]] bool open(const std::vector<std::filesystem::path>& files,
                        const Activation& activation) noexcept;

}  // namespace tolvane::DesktopHost
