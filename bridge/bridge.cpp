#include "bridge/bridge.h"
