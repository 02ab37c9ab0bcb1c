#include "formats/text_clipping.h"
