#include "platform/surface/Islands.h"
