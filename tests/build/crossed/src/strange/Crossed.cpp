// Planted for the check of the module lines: nobody has told it of this module.
#include <string>
