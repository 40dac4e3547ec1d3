// Planted for the check of the module lines: a room looks up into another, one line is crossed here.
#include <gdal.h>

#include "client/facade/Model.h"
#include "client/raster/Model.h"
