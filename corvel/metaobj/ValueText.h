#pragma once

#include <string>

#include "corvel/metaobj/MetaObject.h"

namespace Corvel::MetaObj {

/// Appends what value.ToString() answers, however deep the value is nested: the stack of the thread
/// does not grow with it, and no text is copied twice.
void AppendText(std::string& text, const MetaObject& value);

}  // namespace Corvel::MetaObj
