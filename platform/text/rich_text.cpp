#include "platform/text/rich_text.h"
