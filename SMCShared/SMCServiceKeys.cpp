#include "Platform.h"
#include "SMCService.h"

#include <algorithm>

namespace ventaro {

SMCService& SMCService::shared() {
    static auto* service = new SMCService(*Platform::current().ioKit);
    return *service;
}

SMCService::SMCService(IOKit& ioKit) : ioKit_(ioKit) {
    try {
        open();
    } catch (const SMCError&) {
        // The next operation connects, or reports why it cannot.
    }
}

SMCService::~SMCService() { close(); }

void SMCService::open() {
    const std::lock_guard guard(lock_);
    if (connection_ != 0) {
        return;
    }
    const IOObject service = ioKit_.serviceGetMatchingService(ioKit_.serviceMatching("AppleSMC"));
    if (service == 0) {
        throw SMCError::serviceNotFound();
    }
    IOConnection handle = 0;
    const KernelReturn code = ioKit_.serviceOpen(service, 0, handle);
    ioKit_.objectRelease(service);
    if (code != KernelCode::success) {
        throw SMCError::connectionFailed(code);
    }
    connection_ = handle;
}

void SMCService::close() {
    const std::lock_guard guard(lock_);
    if (connection_ != 0) {
        ioKit_.serviceClose(connection_);
        connection_ = 0;
    }
}

SMCService::CallResult SMCService::callLocked(const SMCKeyData_t& input) {
    CallResult call{};
    std::size_t outputSize = sizeof call.output;
    call.kernelReturn = ioKit_.connectCallStructMethod(connection_, KERNEL_INDEX_SMC, &input,
                                                       sizeof input, &call.output, outputSize);
    return call;
}

SMCService::KeyLookUp SMCService::lookUpLocked(std::uint32_t code) {
    constexpr std::uint8_t noSuchKey = 0x84; // the SMC's own word; any other failure says nothing
    const auto cached = keyInfoCache_.find(code);
    if (cached != keyInfoCache_.end()) {
        return {KeyPresence::present, cached->second};
    }
    SMCKeyData_t input{};
    input.key = code;
    input.data8 = SMC_CMD_READ_KEYINFO;
    const CallResult call = callLocked(input);
    if (call.succeeded()) {
        keyInfoCache_.emplace(code, call.output.keyInfo);
        return {KeyPresence::present, call.output.keyInfo};
    }
    const bool isAbsent =
        call.kernelReturn == KernelCode::success && call.output.result == noSuchKey;
    return {isAbsent ? KeyPresence::absent : KeyPresence::unknown, {}};
}

SMCKeyData_keyInfo_t SMCService::getKeyInfoLocked(std::uint32_t code, std::string_view keyName) {
    const KeyLookUp found = lookUpLocked(code);
    if (found.presence != KeyPresence::present) {
        throw SMCError::keyNotFound(std::string(keyName));
    }
    return found.info;
}

bool SMCService::has(std::string_view key) {
    open();
    const std::lock_guard guard(lock_);
    const KeyPresence presence = lookUpLocked(fourCharCode(key)).presence;
    if (presence == KeyPresence::unknown) {
        throw SMCError::keyNotFound(std::string(key));
    }
    return presence == KeyPresence::present;
}

SMCKeyData_t SMCService::valueRequestLocked(std::string_view key, std::uint8_t command) {
    SMCKeyData_t input{};
    input.key = fourCharCode(key);
    const SMCKeyData_keyInfo_t info = getKeyInfoLocked(input.key, key);
    input.keyInfo.dataSize = info.dataSize;
    input.keyInfo.dataType = info.dataType;
    input.data8 = command;
    return input;
}

SMCRawValue SMCService::readKeyRaw(std::string_view key) {
    open();
    const std::lock_guard guard(lock_);
    const SMCKeyData_t input = valueRequestLocked(key, SMC_CMD_READ_BYTES);
    const CallResult call = callLocked(input);
    if (!call.succeeded()) {
        throw SMCError::readFailed(std::string(key), call.output.result);
    }
    const std::size_t size = std::min<std::size_t>(input.keyInfo.dataSize, SMCBytes::capacity);
    return {fourCharString(input.keyInfo.dataType),
            SMCBytes(std::span(call.output.bytes).first(size))};
}

void SMCService::writeKeyRaw(std::string_view key, std::span<const std::uint8_t> bytes) {
    open();
    const std::lock_guard guard(lock_);
    SMCKeyData_t input = valueRequestLocked(key, SMC_CMD_WRITE_BYTES);
    std::copy_n(bytes.begin(), std::min(bytes.size(), SMCBytes::capacity), input.bytes);
    const CallResult call = callLocked(input);
    if (!call.succeeded()) {
        throw SMCError::writeFailed(std::string(key), call.kernelReturn, call.output.result);
    }
}

std::optional<double> SMCService::readDouble(std::string_view key) {
    try {
        const SMCRawValue raw = readKeyRaw(key);
        return decodeValue(raw.type, raw.bytes);
    } catch (const SMCError&) {
        return std::nullopt;
    }
}

void SMCService::writeValue(std::string_view key, double value) {
    open();
    const SMCKeyData_keyInfo_t info = [&] {
        const std::lock_guard guard(lock_);
        return getKeyInfoLocked(fourCharCode(key), key);
    }();
    writeKeyRaw(key, encodeValue(fourCharString(info.dataType), value));
}

} // namespace ventaro
