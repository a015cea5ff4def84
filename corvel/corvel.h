#pragma once

/// Everything that libcorvel offers to plug-ins and hosts.
#include "corvel/autocli/formatters/DisplayContext.h"
#include "corvel/autocli/formatters/FormatParameters.h"
#include "corvel/autocli/formatters/Formatter.h"
#include "corvel/autocli/plugins/Panic.h"
#include "corvel/autocli/plugins/ShellCommand.h"
#include "corvel/autocli/plugins/ShellTemplate.h"
#include "corvel/autocli/plugins/XmlUtil.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/Export.h"
#include "corvel/platform/Platform.h"
