// Planted for the check of the module lines: a room looks up into another and at the network; two lines are
// crossed here.
#include <curl/curl.h>
#include <gdal.h>

#include "client/facade/Model.h"
#include "client/raster/Model.h"
