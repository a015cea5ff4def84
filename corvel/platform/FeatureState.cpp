#include "corvel/platform/Platform.h"

namespace {

const unsigned char kOff = 0;

}  // namespace

const unsigned char* FeatureList[kFeatureCount] = {};

void FeatureState_InitDeltaMode() {
    for (const unsigned char*& feature : FeatureList) {
        feature = &kOff;
    }
}
