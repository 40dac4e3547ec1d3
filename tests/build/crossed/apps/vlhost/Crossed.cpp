// A host that gives its thread a platform by itself, and reaches behind the facade.
#include "client/raster/Model.h"
#include "frame/ThreadState.h"
