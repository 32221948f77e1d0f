#include "document/ColorText.h"
