#include "document/PageText.h"
