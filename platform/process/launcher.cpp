#include "platform/process/launcher.h"
