#include "corvel/autocli/plugins/Plugin.h"

namespace Corvel::AutoCli {

Plugin::Plugin() = default;

Plugin::~Plugin() = default;

}  // namespace Corvel::AutoCli
