#include "formats/format_inspection.h"
