#pragma once

/// Everything that libcorvel offers to plug-ins and hosts.
#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/Export.h"
#include "corvel/platform/Platform.h"
