#include "platform/images/image_encoder.h"
