#pragma once

#include "corvel/autocli/plugins/XmlTree.h"

namespace Corvel::AutoCli {

// Whether a specification in a descriptor is certainly sound: ExtractInputSpec() and
// ExtractOutputSpec() then raise nothing, and can wait until somebody asks for the specification.
//
// They look once over the elements and build nothing. What is rare may be sound and still not be
// certain here, so no rule need be told twice in all its detail, and no message at all.

bool IsCertainlySoundInput(XmlElement inputSpec);
bool IsCertainlySoundOutput(XmlElement outputSpec);

}  // namespace Corvel::AutoCli
