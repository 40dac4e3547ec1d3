// Planted for the check of the module lines: hosts would come to see a drawing, which is allowed inside only.
#include "client/drawing/Model.h"
#include "client/raster/LeftOut.h"
