#include "document/FixupHtml.h"
