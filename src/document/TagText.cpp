#include "document/TagText.h"
