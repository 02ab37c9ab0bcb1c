#include "platform/text/text_encoding.h"
