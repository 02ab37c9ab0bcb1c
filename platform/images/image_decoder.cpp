#include "platform/images/image_decoder.h"
