#include "catalog/capability_catalog.h"
