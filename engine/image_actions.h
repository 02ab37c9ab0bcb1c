#pragma once

namespace tolvane {

struct NativeJob;

/// Runs an action over images: PNG, JPEG, a smaller PNG, or all of them as one PDF.
/// @throws ConversionFailure, PlatformError
void runImageAction(NativeJob& job);

}  // namespace tolvane
