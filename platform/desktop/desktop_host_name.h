#pragma once

/// Where the desktop host of a session is found on the session bus.
namespace tolvane::DesktopHostName {

inline constexpr const char* name = "app.tolvane.Desktop";
inline constexpr const char* path = "/app/tolvane/Desktop";
inline constexpr const char* interfaceName = "org.freedesktop.Application";

}  // namespace tolvane::DesktopHostName
