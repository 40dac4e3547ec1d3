// Planted for the check of the module lines: three lines are crossed here, none of this is ever compiled.
#include <QWidget>
#include <libxml/tree.h>

#include "contracts/System.h"
#include "engine/Model.h"
