#include "engine/conversion_engine.h"
