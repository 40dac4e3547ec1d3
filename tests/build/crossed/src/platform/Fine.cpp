// Planted for the check of the module lines: nothing is crossed here.
#include <libxml/tree.h>

#include "contracts/XmlDocument.h"
