// Planted for the check of the module lines: nothing is crossed here.
#include <string>
