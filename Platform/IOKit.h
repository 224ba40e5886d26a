#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ventaro {

/// `kern_return_t` of <mach/kern_return.h>: 0 for success.
using KernelReturn = std::int32_t;
/// `io_object_t` of <IOKit/IOTypes.h>: a registered service; 0 for none.
using IOObject = std::uint32_t;
/// `io_connect_t` of <IOKit/IOTypes.h>: an open user client; 0 while not open.
using IOConnection = std::uint32_t;

/// Codes of <IOKit/IOReturn.h>, where each name is a macro: kIOReturnSuccess, kIOReturnNoDevice ...
namespace KernelCode {

constexpr KernelReturn success = 0;
constexpr KernelReturn noDevice = static_cast<KernelReturn>(0xE00002C0);
constexpr KernelReturn notPrivileged = static_cast<KernelReturn>(0xE00002C1);
constexpr KernelReturn badArgument = static_cast<KernelReturn>(0xE00002C2);
constexpr KernelReturn unsupported = static_cast<KernelReturn>(0xE00002C7);
constexpr KernelReturn notOpen = static_cast<KernelReturn>(0xE00002CD);
constexpr KernelReturn timeout = static_cast<KernelReturn>(0xE00002D6);

} // namespace KernelCode

/// What `IOServiceMatching` describes: the services of one driver class. Plain data here; an
/// implementation turns it into the dictionary of its platform.
struct IOServiceMatch {
    std::string_view className;
};

/// The six IOKit operations that the SMC layer uses. Any thread may call any operation.
class IOKit {
public:
    virtual ~IOKit() = default;

    /// `IOServiceMatching`.
    virtual IOServiceMatch serviceMatching(std::string_view className) = 0;
    /// `IOServiceGetMatchingService` on the main port: a service the caller releases, or 0.
    virtual IOObject serviceGetMatchingService(const IOServiceMatch& matching) = 0;
    /// `IOServiceOpen` for the calling process. `connection` is written on success only.
    virtual KernelReturn serviceOpen(IOObject service, std::uint32_t type,
                                     IOConnection& connection) = 0;
    /// `IOObjectRelease`.
    virtual KernelReturn objectRelease(IOObject object) = 0;
    /// `IOServiceClose`.
    virtual KernelReturn serviceClose(IOConnection connection) = 0;
    /// `IOConnectCallStructMethod`. `outputSize` holds the room in `output` before the call and the
    /// bytes written after it. May block, for at most a second where another process answers.
    virtual KernelReturn connectCallStructMethod(IOConnection connection, std::uint32_t selector,
                                                 const void* input, std::size_t inputSize,
                                                 void* output, std::size_t& outputSize) = 0;
};

} // namespace ventaro
