// Planted for the check of the module lines: one line is crossed here.
#include <gdal.h>

#include "engine/Model.h"
