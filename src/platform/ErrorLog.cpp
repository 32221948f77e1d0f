#include "platform/ErrorLog.h"
