#pragma once

/// Everything that libcorvel offers to plug-ins and hosts.
#include "corvel/platform/Export.h"
