#pragma once

namespace tolvane {

struct NativeJob;

/// Runs an action over PDFs: page pictures, rotate, merge, split, edit, text, or recognition.
/// @throws ConversionFailure, PlatformError
void runPdfAction(NativeJob& job);

}  // namespace tolvane
