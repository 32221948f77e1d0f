#include "platform/LineEnds.h"
