#include "platform/recognition/text_recognizer.h"
