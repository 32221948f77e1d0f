#include "platform/TextFile.h"
