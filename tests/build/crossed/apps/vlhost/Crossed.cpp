// A host that gives its thread a platform by itself.
#include "frame/ThreadState.h"
