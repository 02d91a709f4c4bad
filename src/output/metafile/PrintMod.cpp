#include "PrintMod.h"
