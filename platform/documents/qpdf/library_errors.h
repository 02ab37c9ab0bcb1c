#pragma once

/// Translation of what libqpdf throws. Both are called inside a catch block only; failures that are
/// ours already, and std::bad_alloc, pass as they are.
namespace tolvane::LibraryErrors {

/// @throws PdfOpenError, or PlatformError when the system refused to read.
[[noreturn]] void rethrowFromOpening();

/// @throws PlatformError with the library's words.
[[noreturn]] void rethrow();

}  // namespace tolvane::LibraryErrors
