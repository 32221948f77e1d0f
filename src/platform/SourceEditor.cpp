#include "platform/SourceEditor.h"
