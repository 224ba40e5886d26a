// As <IOKit/IOReturn.h> has them.
#define kIOReturnSuccess 0
#define kIOReturnNoDevice 0xe00002c0
#define kIOReturnNotPrivileged 0xe00002c1
#define kIOReturnBadArgument 0xe00002c2
#define kIOReturnUnsupported 0xe00002c7
#define kIOReturnNotOpen 0xe00002cd
#define kIOReturnTimeout 0xe00002d6

#include "IOKit.h"

static_assert(ventaro::KernelCode::success == kIOReturnSuccess);
static_assert(static_cast<unsigned>(ventaro::KernelCode::notPrivileged) == kIOReturnNotPrivileged);
static_assert(static_cast<unsigned>(ventaro::KernelCode::timeout) == kIOReturnTimeout);
