#include "platform/surface/EngineForm.h"
