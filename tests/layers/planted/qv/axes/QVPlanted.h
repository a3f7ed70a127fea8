#pragma once
// A planted upward include: the layer check must refuse it.
#include "qv/display/QVScope.h"
