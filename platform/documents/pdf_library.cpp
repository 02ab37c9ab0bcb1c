#include "platform/documents/pdf_document.h"
