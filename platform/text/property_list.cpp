#include "platform/text/property_list.h"
