#include "document/PathText.h"
