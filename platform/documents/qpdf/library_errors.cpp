#include "platform/documents/qpdf/library_errors.h"

#include <exception>
#include <new>

#include <qpdf/QPDFExc.hh>

#include "platform/documents/pdf_document.h"

namespace tolvane::LibraryErrors {

void rethrowFromOpening() {
  try {
    throw;
  } catch (const PlatformError&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const QPDFExc& error) {
    const bool locked = error.getErrorCode() == qpdf_e_password;
    throw PdfOpenError(locked ? PdfOpenError::Reason::locked : PdfOpenError::Reason::damaged,
                       error.what());
  } catch (const std::exception& error) {
    throw PdfOpenError(PdfOpenError::Reason::damaged, error.what());
  }
}

void rethrow() {
  try {
    throw;
  } catch (const PlatformError&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw PlatformError(error.what());
  }
}

}  // namespace tolvane::LibraryErrors
