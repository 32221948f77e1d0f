#include "platform/FileVersion.h"
