#include "document/GuideStyle.h"
